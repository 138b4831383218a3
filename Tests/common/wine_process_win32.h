#pragma once

#include <windows.h>

#include "platform/unique_resource_win32.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>

// Helpers for tests that start real processes under Wine.
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

// A child process that is ended, if it still runs, when the owner goes.
class child_process {
public:
    child_process() = default;
    // Starts `program` with `arguments` (the command line after the quoted program path).
    static child_process start(const std::filesystem::path& program, const std::wstring& arguments = L"");

    DWORD id() const noexcept { return id_; }
    HANDLE handle() const noexcept { return process_.get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(process_); }
    uint64_t creation_time() const;

    // The exit code, or nothing if it still runs after `timeout`.
    std::optional<DWORD> wait_exit(std::chrono::milliseconds timeout = std::chrono::seconds(20)) const;
    bool running() const { return !wait_exit(std::chrono::milliseconds(0)); }
    void terminate() noexcept;

private:
    unique_handle process_;
    DWORD id_ = 0;
};

}  // namespace test_support
