#include <windows.h>

#include "toasts/tray_toast_ipc_win32.h"

#include "logging/log.h"
#include "platform/paths_win32.h"
#include "process/launch_win32.h"
#include "toasts/toast_utilities_win32.h"
#include "platform/suite_identity.h"

namespace tray_toast_ipc {

namespace {

constexpr UINT SEND_TIMEOUT_MS = 2000;
constexpr ULONGLONG READY_TIMEOUT_MS = 1500;

HWND find_tray() { return FindWindowW(TRAY_WINDOW_CLASS, nullptr); }

}  // namespace

bool send_toast_request(const toast_request& request) {
    const HWND tray = find_tray();
    if (!tray) return false;
    const std::wstring payload = encode_toast_request(request);
    COPYDATASTRUCT copy{};
    copy.dwData = TOAST_COPYDATA_ID;
    copy.cbData = static_cast<DWORD>((payload.size() + 1) * sizeof(wchar_t));  // the terminator counts
    copy.lpData = const_cast<wchar_t*>(payload.c_str());
    DWORD_PTR reply = 0;
    return SendMessageTimeoutW(tray, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy), SMTO_BLOCK | SMTO_ABORTIFHUNG,
                               SEND_TIMEOUT_MS, &reply) != 0 &&
           reply != 0;
}

bool ensure_tray_running() {
    if (find_tray()) return true;
    const std::wstring path = (module_folder() / TRAY_EXECUTABLE).wstring();
    std::error_code ignored;
    if (path.empty() || !std::filesystem::is_regular_file(path, ignored)) {
        logging::log(log_severity::error, L"System Tray executable not found: {}", path);
        return false;
    }
    if (!launch_via_shell(path, L"", 0, true)) {
        logging::log(log_severity::error, L"Unable to launch System Tray: {}", path);
        return false;
    }
    const ULONGLONG limit = GetTickCount64() + READY_TIMEOUT_MS;
    for (;;) {
        if (find_tray()) return true;
        Sleep(50);
        if (GetTickCount64() >= limit) break;
    }
    logging::log(log_severity::error, L"System Tray did not become ready after launch: {}", path);
    return false;
}

void send_tray_toast(std::wstring icon_path, std::wstring tooltip, std::wstring title, std::wstring text,
                     toast_click_action click_action, std::wstring click_arg, std::function<void()> fallback_click) {
    const toast_request request{icon_path, tooltip, title, text, click_action, std::move(click_arg)};
    if (send_toast_request(request)) return;
    // A tray that is there but did not answer gets no second start: the toast shows here.
    if (!find_tray() && ensure_tray_running() && send_toast_request(request)) return;
    toast_utilities::show_toast(std::move(icon_path), std::move(tooltip), std::move(title), std::move(text),
                                std::move(fallback_click), {});
}

}  // namespace tray_toast_ipc
