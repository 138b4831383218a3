#include "updates/update_download_win32.h"

#include <knownfolders.h>
#include <shellapi.h>
#include <shlobj.h>
#include <urlmon.h>
#include <wininet.h>

#include "dialogs/download_progress_dialog_win32.h"
#include "dialogs/message_dialog_win32.h"
#include "platform/string_conversion.h"
#include "updates/update_download.h"
#include "updates/version_check.h"
#include "updates/version_fetch_win32.h"

#include <atomic>
#include <filesystem>
#include <thread>

namespace updates {

namespace {

// Both roads race for it; the toast road and the menu road may each reach a download.
std::atomic<bool> download_running{false};

struct download_job {
    std::wstring url, temporary;
    HWND dialog = nullptr;
    IBindStatusCallback* callback = nullptr;
    HRESULT result = E_FAIL;
};

void download_thread(download_job& job) noexcept {
    const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    job.result = URLDownloadToFileW(nullptr, job.url.c_str(), job.temporary.c_str(), 0, job.callback);
    if (SUCCEEDED(com)) CoUninitialize();
    PostMessageW(job.dialog, common_dialogs::WM_DOWNLOAD_DONE, 0, 0);
}

std::wstring downloads_folder() {
    PWSTR folder = nullptr;
    if (FAILED(SHGetKnownFolderPath(FOLDERID_Downloads, 0, nullptr, &folder))) {
        CoTaskMemFree(folder);
        return {};
    }
    std::wstring path = folder;
    CoTaskMemFree(folder);
    return path;
}

// The download proper, once the flag is ours.
std::wstring download_installer() {
    const std::string version = fetch_public_version();
    if (version.empty()) return {};
    SYSTEM_INFO system{};
    GetNativeSystemInfo(&system);
    const std::wstring file_name = installer_file_name(to_wide(version), platform_text(system.wProcessorArchitecture));
    download_job job;
    job.url = installer_url(download_base_url(), file_name);
    // A cached copy would be an older installer of the same name.
    DeleteUrlCacheEntryW(job.url.c_str());

    const std::wstring folder = downloads_folder();
    if (folder.empty()) return {};
    const std::wstring installer = folder + L"\\" + file_name;
    job.temporary = temporary_installer_path(installer, GetTickCount64());

    common_dialogs::download_progress_dialog dialog;
    job.dialog = dialog.open(L"Downloading update...");
    if (!job.dialog) return {};
    UpdateWindow(job.dialog);
    job.callback = &dialog;
    dialog.done = false;
    std::thread downloader(download_thread, std::ref(job));
    MSG message;
    while (!dialog.done) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got <= 0) {
            dialog.cancelled.store(true);
            // The quit was meant for this thread's owner: hand it on.
            if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        // Tab, Esc (the Cancel button's identifier is IDCANCEL) and Space on the button.
        if (IsDialogMessageW(job.dialog, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    downloader.join();
    // Read before the window goes: its end counts as a cancel for a download still running.
    const bool cancelled = dialog.cancelled.load();
    DestroyWindow(job.dialog);

    const std::filesystem::path temporary(job.temporary);
    if (FAILED(job.result) || cancelled) {
        if (std::filesystem::exists(temporary)) std::filesystem::remove(temporary);
        return {};
    }
    try {
        if (!installer_size_acceptable(std::filesystem::file_size(temporary))) {
            std::filesystem::remove(temporary);
            return {};
        }
    } catch (const std::exception&) {
        // An unreadable size is no reason to stop: the rename decides.
    }
    if (!MoveFileExW(job.temporary.c_str(), installer.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        std::filesystem::remove(temporary);
        return {};
    }
    return installer;
}

}  // namespace

std::wstring download_update(HWND) {
    if (download_running.exchange(true)) return {};
    struct clear_flag {
        ~clear_flag() { download_running.store(false); }
    } clear;
    return download_installer();
}

void install_update(const std::wstring& path) {
    const std::wstring arguments = installer_arguments(path);
    // The installer runs on its own; its outcome is seen at the next start.
    ShellExecuteW(nullptr, L"open", L"msiexec", arguments.c_str(), nullptr, SW_SHOWNORMAL);
}

void update_worker_install(HWND window) {
    const std::wstring path = download_update(window);
    if (!path.empty()) install_update(path);
}

void update_worker_check_install(HWND window) {
    if (update_available(check_for_update())) {
        update_worker_install(window);
        return;
    }
    common_dialogs::show_info_message(up_to_date_text(current_version_string()), window);
}

}  // namespace updates
