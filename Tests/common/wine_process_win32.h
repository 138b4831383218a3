#pragma once

#include <windows.h>

#include "platform/unique_resource_win32.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

// Helpers for tests that start real processes and look at real windows and files under Wine.
namespace test_support {

// Polls `condition` every 20 ms until it holds or `timeout` passes; returns its last answer.
template <class F>
bool poll_until(F&& condition, std::chrono::milliseconds timeout = std::chrono::seconds(20)) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) return condition();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

std::filesystem::path this_program();

// An empty folder of the test's own under the temporary folder.
std::filesystem::path fresh_folder(const std::wstring& name);

// The lines of a text file, without their line feeds.
std::vector<std::string> read_lines(const std::filesystem::path& file);

// Marks the end of a log file; later, gives what was logged since, each line as "[LEVEL] message".
struct log_mark {
    explicit log_mark(std::filesystem::path log) : file(std::move(log)), first(read_lines(file).size()) {}
    std::vector<std::string> messages() const;
    // How often `message` ("[LEVEL] message") was logged since the mark.
    size_t count(const std::string& message) const;
    std::filesystem::path file;
    size_t first;
};

// The top-level windows of `window_class` (and `title`, if given) that the process owns: the visible
// ones, or all with `hidden_too` (every thread with windows owns a hidden "Default IME" window).
std::vector<HWND> windows_of(DWORD process, const wchar_t* window_class, const wchar_t* title = nullptr,
                             bool hidden_too = false);
// The first visible one of them, once it shows; null if none does in time.
HWND wait_for_window(DWORD process, const wchar_t* window_class, const wchar_t* title = nullptr);

// A window's text, through WM_GETTEXT so that it works across processes.
std::wstring window_text(HWND window);
// The body of a message dialog: in an edit when it scrolls, else in a static.
std::wstring dialog_body(HWND dialog);
// Whether the window's thread answers a message within `timeout_ms`.
bool answers(HWND window, UINT timeout_ms = 1000);

// A process that the test started, known by its handle.
class child_process {
public:
    // Starts `program` with `arguments` (the command line after the quoted program path).
    static child_process start(const std::filesystem::path& program, const std::wstring& arguments = L"");

    DWORD id() const noexcept { return id_; }
    uint64_t creation_time() const;
    // How many handles are open on the process, this one among them.
    unsigned long handles_on_it() const;

    // The exit code, or nothing if it still runs after `timeout`.
    std::optional<DWORD> wait_exit(std::chrono::milliseconds timeout = std::chrono::seconds(20)) const;
    bool running() const { return !wait_exit(std::chrono::milliseconds(0)); }
    // Ends it with `exit_code`, as a crash or a kill would, and waits for its end.
    void terminate(DWORD exit_code = 99) noexcept;

private:
    unique_handle process_;
    DWORD id_ = 0;
};

}  // namespace test_support
