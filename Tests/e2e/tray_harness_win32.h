#pragma once

#include <windows.h>

#include <shlobj.h>

#include "common/wine_process_win32.h"
#include "doubles/sibling_doubles_win32.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

// Drives the real Veldrake.SystemTray.exe the way the world does: it starts it beside this program,
// finds its window, sends it messages and reads what it left on disk.
namespace e2e {

using namespace test_support;

std::filesystem::path tray_exe();
// The same tray with the short timers of the test build, in a folder of its own with its siblings.
std::filesystem::path short_timers_tray_exe();
// LocalAppData\Kestrane\Veldrake\System Tray: everything the tray keeps of its own.
std::filesystem::path tray_data_root();
// Today's log file, named as the tray names it.
std::filesystem::path tray_log_file();
// The suite's settings file, which the tray polls.
std::filesystem::path settings_file();

// A folder the shell knows, such as FOLDERID_Downloads or FOLDERID_System.
std::filesystem::path known_folder(REFKNOWNFOLDERID id);

// Removes the tray's data folder and the gate, so that each test starts from a fresh user.
void reset_tray_state();

// Each test starts from a fresh user and leaves no tray, theme or open menu behind.
class tray_test : public testing::Test {
protected:
    void SetUp() override { reset_tray_state(); }
    void TearDown() override;
    // The user's theme: dark or light apps.
    static void set_theme(bool dark);
};

// While it lives, the sibling double `program` beside the tray records its runs in a file of its own.
class recorded_runs {
public:
    explicit recorded_runs(const wchar_t* program, const std::filesystem::path& folder = tray_exe().parent_path());
    ~recorded_runs();
    // The arguments after the program of each run, once `count` runs are recorded (fewer after a timeout).
    std::vector<std::vector<std::wstring>> wait(size_t count = 1) const;
    // The runs recorded so far, as the double saw them.
    std::vector<sibling_doubles::run_record> records() const { return sibling_doubles::read_records(record_); }
    // From its next run on, the double exits with the next of `exit_codes` and lives as `mode` says.
    void exit_with(const std::string& exit_codes, const std::string& mode = "") const {
        sibling_doubles::control(program_, record_, exit_codes, mode);
    }

private:
    std::filesystem::path program_, record_;
};

// While it lives, the system program at `program` (msiexec.exe, powershell.exe) is the sibling double,
// whose runs `runs` records; Wine is told to run the file rather than its builtin.
class system_program_double {
public:
    explicit system_program_double(const std::filesystem::path& program);
    ~system_program_double();

private:
    std::filesystem::path program_, saved_;

public:
    const recorded_runs runs;
};

// A copy of the sibling double under `name` in a folder of the test's own, started to live as `mode` says
// and running once it has recorded its start; ended with the test.
class resident {
public:
    resident(const wchar_t* name, const std::string& mode);
    ~resident() { process_.terminate(); }
    const child_process& process() const { return process_; }

private:
    std::filesystem::path program_;
    child_process process_;
};

// Whether the taskbar holds the tray's icon `id`: a change of nothing succeeds only for an icon it has.
bool icon_shown(HWND tray, UINT id);
// A staged Explorer restart: the old taskbar takes the icon `id` along (false if it had none), then the
// new one sends "TaskbarCreated" to every top-level window, without waiting for any.
bool restart_explorer(HWND tray, UINT id);

// Sends WM_COPYDATA with `bytes` of `payload` to the tray, as a sibling does; its answer.
LRESULT send_copy_data(HWND tray, ULONG_PTR id, const wchar_t* payload, DWORD bytes);
// A toast request for `title` with the text "text", as a sibling sends it; whether it was taken.
bool request_toast(const std::wstring& title);

class running_tray {
public:
    // Starts the tray; when `expect_window` is set, waits for its window and fails the test without one.
    explicit running_tray(bool expect_window = true, const std::filesystem::path& exe = tray_exe());
    // A tray still running at the end is closed, then terminated if it does not go.
    ~running_tray();

    const child_process& process() const noexcept { return process_; }
    HWND window() const noexcept { return window_; }

    // WM_CLOSE from another process, then the exit code (nothing if it did not end).
    std::optional<DWORD> close();

private:
    child_process process_;
    HWND window_ = nullptr;
};

}  // namespace e2e
