#include "process/settings_app.h"

#include <gtest/gtest.h>

using namespace settings_app;

TEST(settings_app, application_control_codes_change_the_text_and_the_log_suffix) {
    const struct { uint32_t error; bool control; } cases[] = {
        {0, false},    {2, false},    {5, false},    {1260, true},  {4551, true}, {4556, true}, {4557, true},
        {4558, true},  {4559, true},  {4560, false}, {4580, true},  {4581, true}, {4582, true}, {4583, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "error " << c.error);
        EXPECT_EQ(is_application_control_error(c.error), c.control);
        EXPECT_EQ(application_control_suffix(c.error).empty(), !c.control);
    }
}

TEST(settings_app, failure_texts_name_the_path_the_reason_and_the_code) {
    const std::wstring path = L"C:\\Program Files\\Veldrake\\Veldrake.exe";
    EXPECT_EQ(format_launch_failure_text(path, 2, L"The system cannot find the file specified."),
              L"The Veldrake Settings app could not be started.\n\nC:\\Program Files\\Veldrake\\Veldrake.exe\n\n"
              L"Windows reported: The system cannot find the file specified. (error 2)");
    const std::wstring blocked = format_launch_failure_text(path, 4551, L"Code integrity policy.");
    EXPECT_EQ(blocked,
              L"Windows blocked the Veldrake Settings app from starting.\n\nSmart App Control or another application "
              L"control policy on this PC refused to run:\nC:\\Program Files\\Veldrake\\Veldrake.exe\n\nWindows "
              L"reported: Code integrity policy. (error 4551)\n\nPlease contact support and include these details "
              L"(use Copy).");
    EXPECT_EQ(format_launch_failure_text(path, 1260, L"x").rfind(L"Windows blocked", 0), 0u);
    EXPECT_EQ(open_tab_arguments("context-menu-replacement"), L"--open-tab=context-menu-replacement");
}

TEST(settings_app, only_an_unpackaged_tray_that_is_not_elevated_starts_the_app_itself) {
    EXPECT_FALSE(start_through_shell(false, false));
    EXPECT_TRUE(start_through_shell(true, false));
    EXPECT_TRUE(start_through_shell(false, true));
}
