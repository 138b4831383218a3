#include "e2e/tray_harness_win32.h"

#include "common/test_registry_win32.h"
#include "logging/log_format.h"
#include "platform/paths_win32.h"
#include "tray_messages.h"

#include <fstream>

namespace e2e {

std::filesystem::path tray_exe() { return test_support::this_program().parent_path() / L"Veldrake.SystemTray.exe"; }

std::filesystem::path tray_data_root() { return local_app_data_folder() / L"Kestrane" / L"Veldrake" / L"System Tray"; }

std::filesystem::path tray_log_folder() { return tray_data_root() / L"System Tray" / L"Logs"; }

std::filesystem::path tray_log_file() {
    return tray_log_folder() / log_file_name(L"System Tray", to_local_time(std::chrono::system_clock::now()));
}

std::vector<std::string> read_lines(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

void reset_tray_state() {
    std::error_code ignored;
    std::filesystem::remove_all(tray_data_root(), ignored);
    test_registry::delete_tree(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Kestrane\\Veldrake\\InstallerMaintenance");
}

HWND find_tray_window(DWORD process_id) {
    HWND found = nullptr;
    while ((found = FindWindowExW(nullptr, found, TRAY_WINDOW_CLASS, nullptr)) != nullptr) {
        DWORD owner = 0;
        GetWindowThreadProcessId(found, &owner);
        if (owner == process_id) return found;
    }
    return nullptr;
}

running_tray::running_tray(bool expect_window) : process_(test_support::child_process::start(tray_exe())) {
    if (!expect_window) return;
    test_support::poll_until([&] {
        window_ = find_tray_window(process_.id());
        return window_ != nullptr || !process_.running();
    });
}

running_tray::~running_tray() {
    if (process_ && process_.running() && !close()) process_.terminate();
}

std::optional<DWORD> running_tray::close() {
    if (HWND w = find_tray_window(process_.id())) PostMessageW(w, WM_CLOSE, 0, 0);
    return process_.wait_exit(std::chrono::seconds(20));
}

}  // namespace e2e
