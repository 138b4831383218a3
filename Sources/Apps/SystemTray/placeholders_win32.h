#pragma once

// Subsystems that are not built yet. Each keeps the name and shape that the tray window calls, and
// does nothing, until its own module replaces it here. Keeping them in one place shows what is left.
#include <windows.h>

#include <atomic>
#include <filesystem>
#include <string>

namespace microphone_mute {
// Follows the default microphone's mute state.
class mute_monitor {
public:
    bool started() const noexcept { return false; }
    void rearm_on_default_device() noexcept {}
    void stop() noexcept {}
};
}  // namespace microphone_mute
