#pragma once

#include <windows.h>

#include "platform/unique_resource_win32.h"

#include <atomic>
#include <filesystem>

// Pings the window thread once a second from a thread of its own; when the answer stays away for ten
// seconds it logs the hang and writes a minidump into the log folder. It never repairs anything.
class ui_watchdog {
public:
    ui_watchdog() = default;
    ui_watchdog(const ui_watchdog&) = delete;
    ui_watchdog& operator=(const ui_watchdog&) = delete;
    ~ui_watchdog() { stop_watchdog(); }

    // Does nothing while the thread runs. Without a stop event the tray goes on with no watchdog.
    void start_watchdog(HWND target, const std::filesystem::path& folder);
    // Wakes the thread at once through its event, so the exit never waits out a tick. Harmless twice.
    void stop_watchdog() noexcept;
    // WM_WATCHDOG_PING, on the window thread.
    void on_ping() noexcept { answered.exchange(true); }

private:
    // How long the tray's exit waits for the thread, which wakes at once through its event.
    static constexpr DWORD STOP_WAIT_MS = 5000;

    static DWORD WINAPI thread_entry(void* self) noexcept;
    void run_watchdog() noexcept;

    HWND window = nullptr;
    std::filesystem::path dump_folder;
    unique_handle stop_event;  // manual reset
    unique_handle thread;
    std::atomic<bool> answered{false};
};
