#pragma once

// Subsystems that are not built yet. Each keeps the name and shape that the tray window calls, and
// does nothing, until its own module replaces it here. Keeping them in one place shows what is left.
#include <windows.h>

#include <atomic>
#include <filesystem>
#include <string>

// Shows the suite's toasts one at a time and takes requests of sibling processes over WM_COPYDATA.
class toast_dispatcher {
public:
    bool running() const noexcept { return false; }
    void start() {}
    void stop() noexcept {}
    LRESULT on_copy_data(HWND, WPARAM, LPARAM) noexcept { return 0; }
};

// Pings the window thread and writes a dump when it hangs.
class ui_watchdog {
public:
    void start_watchdog(HWND, const std::filesystem::path&) {}
    void stop_watchdog() noexcept {}
    void on_ping() noexcept { answered.store(true); }

private:
    std::atomic<bool> answered{false};
};

namespace microphone_mute {
// Follows the default microphone's mute state.
class mute_monitor {
public:
    bool started() const noexcept { return false; }
    void rearm_on_default_device() noexcept {}
    void stop() noexcept {}
};
}  // namespace microphone_mute
