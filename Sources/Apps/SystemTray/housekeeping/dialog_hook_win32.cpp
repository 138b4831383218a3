#include <windows.h>

#include "housekeeping/dialog_hook_win32.h"

#include "housekeeping/dialog_hook.h"
#include "logging/log.h"
#include "platform/paths_win32.h"
#include "platform/unique_resource_win32.h"
#include "process/launch_win32.h"
#include "process/process_tools_win32.h"
#include "settings/high_level_settings.h"
#include "toasts/tray_toast_ipc_win32.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace housekeeping {

namespace {

struct dialog_hook_request {
    HWND window;
    std::wstring controller_path, arguments, process_name;
    uint32_t process_id;
};

std::mutex hooked_lock;
std::vector<uint32_t> hooked_process_ids;

bool claim(uint32_t id) {
    const std::lock_guard guard(hooked_lock);
    if (std::find(hooked_process_ids.begin(), hooked_process_ids.end(), id) != hooked_process_ids.end()) return false;
    hooked_process_ids.push_back(id);
    return true;
}

void release(uint32_t id) {
    const std::lock_guard guard(hooked_lock);
    std::erase(hooked_process_ids, id);
}

// The integrity level (the last sub-authority of its SID) and whether it is an AppContainer.
std::optional<std::pair<uint32_t, bool>> token_standing(HANDLE process) {
    HANDLE opened = nullptr;
    if (!OpenProcessToken(process, TOKEN_QUERY, &opened)) return std::nullopt;
    const unique_handle token(opened);
    alignas(TOKEN_MANDATORY_LABEL) BYTE label[64 + sizeof(TOKEN_MANDATORY_LABEL)] = {};
    DWORD size = 0, container = 0;
    if (!GetTokenInformation(token.get(), TokenIntegrityLevel, label, sizeof(label), &size) ||
        !GetTokenInformation(token.get(), TokenIsAppContainer, &container, sizeof(container), &size)) {
        return std::nullopt;
    }
    const PSID sid = reinterpret_cast<TOKEN_MANDATORY_LABEL*>(label)->Label.Sid;
    const UCHAR count = *GetSidSubAuthorityCount(sid);
    if (count == 0) return std::nullopt;
    return std::pair{static_cast<uint32_t>(*GetSidSubAuthority(sid, count - 1)), container != 0};
}

bool integrity_matches(uint32_t process_id) {
    const auto own = token_standing(GetCurrentProcess());
    const unique_handle target(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process_id));
    if (!own || !target) return false;
    const auto theirs = token_standing(target.get());
    return theirs && integrity_allows(own->first, theirs->first, theirs->second);
}

BOOL CALLBACK find_folder_view(HWND child, LPARAM found) {
    wchar_t class_name[32] = {};
    GetClassNameW(child, class_name, 32);
    if (wcscmp(class_name, L"SHELLDLL_DefView") != 0) return TRUE;
    *reinterpret_cast<bool*>(found) = true;
    return FALSE;
}

// Up to about a second for the dialog to show the folder view of a file dialog.
bool becomes_file_dialog(HWND dialog) {
    for (int round = 0; round < 20; ++round) {
        if (!IsWindow(dialog)) return false;
        bool found = false;
        EnumChildWindows(dialog, find_folder_view, reinterpret_cast<LPARAM>(&found));
        if (found) return true;
        Sleep(50);
    }
    return false;
}

bool holds_hook(uint32_t process_id) {
    for (HWND w = FindWindowExW(HWND_MESSAGE, nullptr, L"VdrkCmrReplacementMessageWindow", nullptr); w;
         w = FindWindowExW(HWND_MESSAGE, w, L"VdrkCmrReplacementMessageWindow", nullptr)) {
        DWORD owner = 0;
        GetWindowThreadProcessId(w, &owner);
        if (owner == process_id) return true;
    }
    return false;
}

void record_crash(const dialog_hook_request& r, uint32_t exit_code) {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    const std::wstring record =
        crash_record({now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond}, exit_code);
    const LSTATUS written = RegSetKeyValueW(HKEY_CURRENT_USER, DIALOG_CRASH_KEY, r.process_name.c_str(), REG_SZ,
                                           record.c_str(), static_cast<DWORD>((record.size() + 1) * sizeof(wchar_t)));
    const std::wstring suffix =
        written == ERROR_SUCCESS ? L"" : fmt::format(L" (recording it failed, error {})", static_cast<uint32_t>(written));
    logging::log(log_severity::warning,
                 L"[dialogs] {} (pid {}) crashed with 0x{:08X} while holding the Corvane hook; its Open and Save "
                 L"dialogs are left alone from now on{}",
                 r.process_name, r.process_id, exit_code, suffix);
    tray_toast_ipc::send_tray_toast((module_folder() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring(), L"Veldrake",
                                    crash_toast_title(r.process_name), crash_toast_text(r.process_name),
                                    tray_toast_ipc::toast_click_action::open_settings_tab, L"context-menu-replacement",
                                    {});
}

void watch_dialog(const dialog_hook_request& r) {
    if (!becomes_file_dialog(r.window)) return;
    const int32_t injected = run_and_wait(r.controller_path, r.arguments);
    if (injected != 0) {
        logging::log(log_severity::warning,
                     L"[dialogs] inject-dialog for {} (pid {}) exited with code {}; see the Corvane controller log",
                     r.process_name, r.process_id, static_cast<uint32_t>(injected));
    }
    // The hook may be in from an earlier dialog: the watch goes on whatever the controller said.
    if (!claim(r.process_id)) return;
    const unique_handle process(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, r.process_id));
    if (!process || !holds_hook(r.process_id)) return release(r.process_id);
    WaitForSingleObject(process.get(), INFINITE);
    DWORD exit_code = 0;
    const bool read = GetExitCodeProcess(process.get(), &exit_code);
    release(r.process_id);
    if (read && is_crash_exit(exit_code)) record_crash(r, exit_code);
}

bool recorded_crash(const std::wstring& process_name) {
    return RegGetValueW(HKEY_CURRENT_USER, DIALOG_CRASH_KEY, process_name.c_str(), RRF_RT_REG_SZ, nullptr, nullptr,
                        nullptr) == ERROR_SUCCESS;
}

}  // namespace

void on_dialog_window(HWND dialog) noexcept {
    try {
        DWORD process_id = 0;
        GetWindowThreadProcessId(dialog, &process_id);
        if (process_id == 0) return;
        // Built at first use, on the window thread only, and read again whenever the file changed.
        static std::unique_ptr<high_level_settings::settings_file> settings;
        if (!settings) settings = std::make_unique<high_level_settings::settings_file>();
        dialog_settings chosen;
        if (!settings->reload_if_changed(false) || !read_dialog_settings(*settings, chosen)) return;
        const std::wstring name = process_image_name(process_id);
        if (!dialog_selected(chosen, name) || recorded_crash(name) || !integrity_matches(process_id)) return;
        const std::wstring controller = (module_folder() / L"Veldrake.ContextMenuReplacement.Controller.exe").wstring();
        if (GetFileAttributesW(controller.c_str()) == INVALID_FILE_ATTRIBUTES) {
            logging::log(log_severity::warning, L"[dialogs] Context Menu Replacement controller not found at {}",
                         controller);
            return;
        }
        dialog_hook_request request{dialog, controller,
                                    inject_dialog_arguments(reinterpret_cast<uintptr_t>(dialog)), name, process_id};
        std::thread([request = std::move(request)] {
            try {
                watch_dialog(request);
            } catch (const std::exception& e) {
                logging::log(log_severity::error, "watch_dialog failed: {}", e.what());
            } catch (...) {
                logging::log(log_severity::error, "watch_dialog failed with unknown exception");
            }
        }).detach();
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "[dialogs] A dialog could not be served: {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "[dialogs] A dialog could not be served");
    }
}

}  // namespace housekeeping
