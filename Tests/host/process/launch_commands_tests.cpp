#include "platform/string_conversion.h"
#include "process/launch_commands.h"

#include <gtest/gtest.h>

using namespace process_launch;

TEST(launch_commands, the_interpreter_line_carries_the_switch_the_quoted_path_and_a_blank) {
    const struct { int32_t show_command; const wchar_t *path, *arguments, *expected; } cases[] = {
        {0, L"C:\\Suite\\V.exe", L"--open-tab=settings", L"/c start \"\" /B \"C:\\Suite\\V.exe\" --open-tab=settings"},
        {1, L"C:\\Program Files\\V\\Veldrake.exe", L"", L"/c start \"\" \"C:\\Program Files\\V\\Veldrake.exe\" "},
        {2, L"C:\\a b\\c.exe", L"\"x y\" z", L"/c start \"\" /MIN \"C:\\a b\\c.exe\" \"x y\" z"},
        {3, L"c.exe", L"", L"/c start \"\" /MAX \"c.exe\" "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(to_utf8(c.expected));
        EXPECT_EQ(interpreter_arguments(window_switch(c.show_command), c.path, c.arguments), c.expected);
    }
}

TEST(launch_commands, the_interpreter_is_the_system_folders_or_found_on_the_path) {
    EXPECT_EQ(interpreter_path(L"C:\\Windows\\system32"), L"C:\\Windows\\system32\\cmd.exe");
    EXPECT_EQ(interpreter_path(std::nullopt), L"cmd.exe");
}

// The flags that the Win32 tier proves on a real child: a console without a window only for show
// command 0 with no_window, and the show command passed on unless it is the default 1.
TEST(launch_commands, the_direct_start_sets_the_show_window_and_the_console_flags) {
    const struct { int32_t show_command; bool no_window; uint32_t startup_flags, creation_flags; uint16_t show; } cases[] = {
        {0, true, startf_use_show_window, create_no_window, 0},  {0, false, startf_use_show_window, detached_process, 0},
        {1, true, 0, detached_process, 0},                       {5, false, startf_use_show_window, detached_process, 5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.show_command * 10 + c.no_window);
        const direct_start d = direct_start_options(c.show_command, c.no_window);
        EXPECT_EQ(d.startup_flags, c.startup_flags);
        EXPECT_EQ(d.creation_flags, c.creation_flags);
        EXPECT_EQ(d.show_window, c.show);
    }
}
