#include "platform/string_conversion.h"
#include "process/launch_commands.h"

#include <fmt/xchar.h>
#include <gtest/gtest.h>

using namespace process_launch;

TEST(launch_commands, the_interpreter_line_carries_the_switch_the_quoted_path_and_a_blank) {
    const struct {
        int32_t show_command;
        const wchar_t* path;
        const wchar_t* arguments;
        const wchar_t* expected;
    } cases[] = {
        {0, L"C:\\Suite\\Veldrake.exe", L"--open-tab=settings", L"/c start \"\" /B \"C:\\Suite\\Veldrake.exe\" --open-tab=settings"},
        {1, L"C:\\Program Files\\Veldrake\\Veldrake.exe", L"", L"/c start \"\" \"C:\\Program Files\\Veldrake\\Veldrake.exe\" "},
        {2, L"C:\\a b\\c.exe", L"\"x y\" z", L"/c start \"\" /MIN \"C:\\a b\\c.exe\" \"x y\" z"},
        {3, L"c.exe", L"", L"/c start \"\" /MAX \"c.exe\" "},
        {5, L"c.exe", L"-q", L"/c start \"\" \"c.exe\" -q"},
        {-1, L"c.exe", L"-q", L"/c start \"\" \"c.exe\" -q"},
        {7, L"c.exe", L"-q", L"/c start \"\" \"c.exe\" -q"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(to_utf8(c.expected));
        EXPECT_EQ(interpreter_arguments(window_switch(c.show_command), c.path, c.arguments), c.expected);
    }
}

TEST(launch_commands, the_direct_line_quotes_the_path_and_keeps_the_blank_of_empty_arguments) {
    EXPECT_EQ(direct_command_line(L"C:\\Program Files\\Veldrake\\Veldrake.exe", L""),
              L"\"C:\\Program Files\\Veldrake\\Veldrake.exe\" ");
    EXPECT_EQ(direct_command_line(L"C:\\c.exe", L"reconcile --allow-restart"), L"\"C:\\c.exe\" reconcile --allow-restart");
    EXPECT_EQ(interpreter_path(L"C:\\windows\\system32"), L"C:\\windows\\system32\\cmd.exe");
    EXPECT_EQ(interpreter_path(std::nullopt), L"cmd.exe");
}

TEST(launch_commands, direct_start_shows_as_asked_and_hides_a_console_only_for_a_hidden_no_window_start) {
    const struct {
        int32_t show_command;
        bool no_window;
        uint32_t startup_flags;
        uint16_t show_window;
        uint32_t creation_flags;
    } cases[] = {
        {0, true, startf_use_show_window, 0, create_no_window},
        {0, false, startf_use_show_window, 0, detached_process},
        {1, false, 0, 0, detached_process},
        {1, true, 0, 0, detached_process},
        {2, true, startf_use_show_window, 2, detached_process},
        {3, false, startf_use_show_window, 3, detached_process},
        {5, false, startf_use_show_window, 5, detached_process},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("show={} no_window={}", c.show_command, c.no_window));
        const auto options = direct_start_options(c.show_command, c.no_window);
        EXPECT_EQ(options.startup_flags, c.startup_flags);
        EXPECT_EQ(options.show_window, c.show_window);
        EXPECT_EQ(options.creation_flags, c.creation_flags);
    }
}
