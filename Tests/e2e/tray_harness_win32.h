#pragma once

#include <windows.h>

#include "common/wine_process_win32.h"

#include <filesystem>
#include <string>
#include <vector>

// Drives the real Veldrake.SystemTray.exe the way the world does: it starts it beside this program,
// finds its window, sends it messages and reads what it left on disk.
namespace e2e {

std::filesystem::path tray_exe();

// LocalAppData\Kestrane\Veldrake\System Tray: everything the tray keeps of its own.
std::filesystem::path tray_data_root();
std::filesystem::path tray_log_folder();
// Today's log file, named as the tray names it.
std::filesystem::path tray_log_file();
std::vector<std::string> read_lines(const std::filesystem::path& file);

// Removes the tray's data folder and the gate, so that each test starts from a fresh user.
void reset_tray_state();

class running_tray {
public:
    // Starts the tray; when `expect_window` is set, waits for its window.
    explicit running_tray(bool expect_window = true);
    running_tray(const running_tray&) = delete;
    running_tray& operator=(const running_tray&) = delete;
    // A tray still running at the end is closed, then terminated if it does not go.
    ~running_tray();

    const test_support::child_process& process() const noexcept { return process_; }
    HWND window() const noexcept { return window_; }

    // WM_CLOSE from another process, then the exit code (nothing if it did not end).
    std::optional<DWORD> close();

private:
    test_support::child_process process_;
    HWND window_ = nullptr;
};

// The tray's window of this process, or null.
HWND find_tray_window(DWORD process_id);

}  // namespace e2e
