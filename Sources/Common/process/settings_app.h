#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The texts of a failed start of the Settings app.
namespace settings_app {

// Smart App Control and the other application control policies refuse a start with these codes.
bool is_application_control_error(uint32_t error) noexcept;

// The dialog's text, given the code's system text.
std::wstring format_launch_failure_text(std::wstring_view path, uint32_t error, std::wstring_view error_text);

// Said after a failed direct start when application control refused it; empty otherwise.
std::string_view application_control_suffix(uint32_t error) noexcept;

// "--open-tab=<tab>"
std::wstring open_tab_arguments(std::string_view tab);

// A packaged or elevated tray leaves the start to the shell, so that the app runs with the user's
// own identity and rights rather than inheriting ours.
bool start_through_shell(bool packaged, bool elevated) noexcept;

}  // namespace settings_app
