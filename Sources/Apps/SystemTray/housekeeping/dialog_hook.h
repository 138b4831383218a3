#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace high_level_settings {
class settings_file;
}

// Which programs' Open and Save dialogs the Corvane hook serves, and what a crash with it in leaves.
namespace housekeeping {

constexpr const wchar_t* DIALOG_CRASH_KEY = L"Software\\Kestrane\\Veldrake\\Corvane\\DialogCrashExclusions";

struct dialog_settings {
    std::wstring mode;  // "off", "allowlist"; anything else is "all-except"
    std::vector<std::wstring> allowed, excluded;
};

// The settings of the "context-menu-replacement" app; nothing when the app is absent or disabled.
bool read_dialog_settings(const high_level_settings::settings_file& settings, dialog_settings& out);

// Whether a dialog of the process with this lower-case image name is to be served.
bool dialog_selected(const dialog_settings& settings, std::wstring_view image_name);

// An NT error status or a breakpoint, but not Ctrl+C.
bool is_crash_exit(uint32_t exit_code) noexcept;

struct local_time {
    uint16_t year, month, day, hour, minute, second;
};
// The crash record's data: "2026-11-24 16:30:05 exit 0xC0000005".
std::wstring crash_record(const local_time& when, uint32_t exit_code);

// The controller's arguments for a dialog window: "inject-dialog 0x1A2B".
std::wstring inject_dialog_arguments(uintptr_t window);

}  // namespace housekeeping

namespace housekeeping {

// The hook goes only into a process at the tray's own integrity level that is no AppContainer.
constexpr bool integrity_allows(uint32_t own_level, uint32_t target_level, bool target_in_container) noexcept {
    return !target_in_container && target_level == own_level;
}

// The toast after a crash: its title and text.
std::wstring crash_toast_title(std::wstring_view process_name);
std::wstring crash_toast_text(std::wstring_view process_name);

}  // namespace housekeeping
