#include "process/launch_commands.h"

#include <fmt/xchar.h>

namespace process_launch {

std::wstring interpreter_path(std::optional<std::wstring_view> system_folder) {
    if (!system_folder) return L"cmd.exe";
    return std::wstring(*system_folder) + L"\\cmd.exe";
}

std::wstring_view window_switch(int32_t show_command) {
    switch (show_command) {
        case 0: return L"/B ";
        case 2: return L"/MIN ";
        case 3: return L"/MAX ";
        default: return L"";
    }
}

std::wstring interpreter_arguments(std::wstring_view window_switch, std::wstring_view path, std::wstring_view arguments) {
    return fmt::format(L"/c start \"\" {}\"{}\" {}", window_switch, path, arguments);
}

std::wstring direct_command_line(std::wstring_view path, std::wstring_view arguments) {
    return fmt::format(L"\"{}\" {}", path, arguments);
}

direct_start direct_start_options(int32_t show_command, bool no_window) {
    direct_start options;
    if (show_command != 1) {
        options.startup_flags = startf_use_show_window;
        options.show_window = static_cast<uint16_t>(show_command);
    }
    options.creation_flags = show_command == 0 && no_window ? create_no_window : detached_process;
    return options;
}

}  // namespace process_launch
