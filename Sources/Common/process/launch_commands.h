#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The command lines and start options of the process launchers. A launcher quotes the program's
// path; the arguments go as they stand, so callers quote what needs it inside them. Empty arguments
// keep the separating blank.
namespace process_launch {

constexpr uint32_t startf_use_show_window = 0x00000001;  // STARTF_USESHOWWINDOW
constexpr uint32_t detached_process = 0x00000008;        // DETACHED_PROCESS
constexpr uint32_t create_no_window = 0x08000000;        // CREATE_NO_WINDOW

// "<system folder>\cmd.exe", or the bare "cmd.exe" for the platform's search when the folder is unknown.
std::wstring interpreter_path(std::optional<std::wstring_view> system_folder);

// The interpreter's "start" switch for a ShowWindow command: only hide, minimise and maximise have one.
std::wstring_view window_switch(int32_t show_command);

// `/c start "" <switch>"<path>" <arguments>`: the empty title keeps "start" from taking the quoted
// path for one.
std::wstring interpreter_arguments(std::wstring_view window_switch, std::wstring_view path, std::wstring_view arguments);

// `"<path>" <arguments>` for CreateProcessW.
std::wstring direct_command_line(std::wstring_view path, std::wstring_view arguments);

struct direct_start {
    uint32_t startup_flags = 0;  // STARTUPINFOW::dwFlags
    uint16_t show_window = 0;    // STARTUPINFOW::wShowWindow
    uint32_t creation_flags = 0;
};

// Show command 1 leaves the window state to the child. A console child gets a console without a
// window only for show command 0 with `no_window`; otherwise it is detached from any console.
direct_start direct_start_options(int32_t show_command, bool no_window);

}  // namespace process_launch
