#pragma once

// Subsystems that are not built yet. Each keeps the name and shape that the tray window calls, and
// does nothing, until its own module replaces it here. Keeping them in one place shows what is left.
#include <windows.h>

#include <atomic>
#include <filesystem>
#include <string>

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
