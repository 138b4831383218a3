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
        {5, L"c.exe", L"-q", L"/c start \"\" \"c.exe\" -q"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(to_utf8(c.expected));
        EXPECT_EQ(interpreter_arguments(window_switch(c.show_command), c.path, c.arguments), c.expected);
    }
}
