#include "common/test_registry_win32.h"
#include "common/wine_process_win32.h"
#include "doubles/sibling_doubles_win32.h"
#include "platform/com_ptr_win32.h"
#include "platform/scope_exit.h"
#include "process/launch_commands.h"
#include "process/launch_win32.h"
#include "process/settings_app_win32.h"
#include "win32/test_log_win32.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

// Treats both shell automation classes as a class that does not exist, or again as themselves.
void close_shell_roads(bool close) {
    static const std::wstring keys[] = {
        L"Software\\Classes\\CLSID\\{13709620-C279-11CE-A49E-444553540000}\\TreatAs",
        L"Software\\Classes\\CLSID\\{9BA05972-F6A8-11CF-A442-00A0C90A8F39}\\TreatAs"};
    for (const auto& key : keys) {
        if (!close) test_registry::delete_tree(HKEY_LOCAL_MACHINE, key);
        else test_registry::set_string(HKEY_LOCAL_MACHINE, key, nullptr, L"{6F1E2D3C-0000-4A5B-9C8D-000000000001}");
    }
}

// A sibling double at a path with blanks, recording into a file of the test's own.
class launch_test : public testing::Test {
protected:
    void SetUp() override {
        program = sibling_doubles::install_copy(root / L"Program Files" / L"Veldrake Suite" / L"Veldrake.exe");
        sibling_doubles::control(program, record);
    }

    // The next run of the double, once it is recorded.
    sibling_doubles::run_record next_run() {
        test_support::poll_until([&] { return sibling_doubles::read_records(record).size() > seen; });
        const auto runs = sibling_doubles::read_records(record);
        EXPECT_EQ(runs.size(), ++seen);
        return runs.size() >= seen ? runs[seen - 1] : sibling_doubles::run_record{};
    }
    std::wstring quoted(const std::wstring& arguments) const { return L"\"" + program.wstring() + L"\" " + arguments; }

    const std::filesystem::path root = test_support::fresh_folder(L"launch"), record = root / L"record.txt";
    std::filesystem::path program;
    size_t seen = 0;
};

}  // namespace

TEST_F(launch_test, run_and_wait_starts_the_exact_command_line_hidden_and_gives_its_exit_code) {
    const struct { const wchar_t* arguments; DWORD exit_code; } cases[] = {
        {L"reconcile --allow-restart", 3}, {L"", 0xC0000005}, {L"\"quoted argument\" 2", 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(to_utf8(c.arguments));
        sibling_doubles::control(program, record, c.exit_code);
        EXPECT_EQ(run_and_wait(program.wstring(), c.arguments), static_cast<int32_t>(c.exit_code));
        const auto run = next_run();
        EXPECT_EQ(run.command_line, quoted(c.arguments));
        EXPECT_EQ(run.show, L"0");
        EXPECT_EQ(run.folder, std::filesystem::current_path().wstring()) << "the child keeps the caller's folder";
    }
    EXPECT_EQ(run_and_wait((root / L"Missing Folder" / L"Veldrake.exe").wstring(), L"reconcile"), -1);
}

// The interpreter's "start" gives the child the quoted path and the arguments as they stand, the
// window state of the switch (Wine's start gives SW_SHOWNORMAL for /B) and the caller's working folder.
// With both shell roads closed, launch_via_shell starts the program itself with the direct road's start
// options, and launch_hidden_via_shell reports the closed road to its caller.
TEST_F(launch_test, the_shell_launchers_go_through_the_interpreter_or_start_directly_when_the_shell_is_closed) {
    // Show command -1 stands for launch_hidden_via_shell. CREATE_NO_WINDOW gives a console child a
    // console without a window, DETACHED_PROCESS none; the interpreter's children are not looked at.
    const struct { bool closed; int32_t show_command; bool no_window; const wchar_t *arguments, *show, *console; }
        cases[] = {
        {false, 2, false, L"\"a b\" c", L"2", nullptr},
        {false, -1, false, L"--add-index-scope \"C:\\a b\"", L"1", nullptr},
        {true, 0, true, L"", L"0", L"console"},
        {true, 1, true, L"-c", L"-", L"none"},
        {true, 5, false, L"\"x y\"", L"5", L"none"},
    };
    const scope_exit reopen([] { close_shell_roads(false); });
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.closed ? "closed, " : "") << c.show_command << ", " << c.no_window);
        close_shell_roads(c.closed);
        ASSERT_TRUE(c.show_command < 0 ? launch_hidden_via_shell(program.wstring(), c.arguments)
                                       : launch_via_shell(program.wstring(), c.arguments, c.show_command, c.no_window));
        const auto run = next_run();
        EXPECT_EQ(run.command_line, quoted(c.arguments));
        EXPECT_EQ(run.show, c.show);
        EXPECT_EQ(run.folder, std::filesystem::current_path().wstring());
        if (c.console) {
            EXPECT_EQ(run.console, c.console);
        }
    }
    EXPECT_THROW(launch_hidden_via_shell(program.wstring(), L"--hidden"), std::runtime_error) << "the roads are closed";
}

// The second road asks the running Explorer's desktop for its shell. Under Wine, the desktop ends
// about five seconds after a process has walked from its window list to its folder view, taking
// every window with it, and the processes that stay cannot create windows any more. So this test is
// kept out of the shared Win32 run and has a Wine prefix of its own (cmake/doubles.cmake).
TEST_F(launch_test, DISABLED_desktop_road_starts_the_program_through_the_running_explorer) {
    {
        com_scope com;
        ASSERT_TRUE(process_launch::shell_execute_through_desktop(
            L"cmd.exe", process_launch::interpreter_arguments(L"/B ", program.wstring(), L"--desktop-road")));
    }
    EXPECT_EQ(next_run().command_line, quoted(L"--desktop-road"));
}

// Wine's tray is always elevated, so the direct road runs only when the test says it is not.
TEST_F(launch_test, settings_app_starts_directly_in_its_folder_when_not_elevated_and_reports_a_failed_start) {
    settings_app::start_settings_app(program.wstring(), L"--open-tab=settings", false);
    const auto run = next_run();
    EXPECT_EQ(run.command_line, quoted(L"--open-tab=settings"));
    EXPECT_EQ(run.folder, program.parent_path().wstring());
    EXPECT_EQ(run.show, L"-");

    const std::wstring missing = (root / L"Veldrake.exe").wstring();
    const test_support::log_mark mark(test_log_path());
    try {
        settings_app::start_settings_app(missing, L"--open-tab=what-new", false);
        ADD_FAILURE() << "a missing program started";
    } catch (const settings_app::launch_error& e) {
        EXPECT_EQ(e.error_code, 2u);
        EXPECT_EQ(e.user_message.rfind(L"The Veldrake Settings app could not be started.\n\n" + missing + L"\n\n", 0), 0u);
    }
    const auto logged = mark.messages();
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_EQ(logged[0].rfind("[ERROR] Failed to launch the Settings app " + to_utf8(missing) + " --open-tab=what-new: error 2 (", 0), 0u)
        << logged[0];

    // Out of memory for a shell string is no std::exception, and still ends in the dialog's text.
    const std::wstring text = settings_app::start_failure_text(std::make_exception_ptr(process_launch::com_failure{E_OUTOFMEMORY}));
    EXPECT_EQ(text.rfind(L"The Veldrake Settings app could not be started.\n\n", 0), 0u);
    EXPECT_NE(text.find(L"0x8007000E"), std::wstring::npos) << to_utf8(text);
}
