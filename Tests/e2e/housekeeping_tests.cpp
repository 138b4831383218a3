#include "common/test_registry_win32.h"
#include "doubles/sibling_doubles_win32.h"
#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "platform/scope_exit.h"
#include "platform/string_conversion.h"
#include "toasts/notification_window_win32.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

#include <fmt/xchar.h>

#include <algorithm>
#include <fstream>

using namespace e2e;
using namespace std::chrono_literals;

namespace {

using housekeeping = tray_test;

}  // namespace

// Exit takes the icon away at once, asks a resident with a window to close, terminates one without
// a window and one that hangs in its window procedure after the shared grace, leaves a surrogate host
// without the suite's modules alone, and only then ends the tray; a second Exit meanwhile starts
// nothing new, and the tray's window answers throughout.
TEST_F(housekeeping, exit_ends_the_residents_after_the_icon_and_before_the_tray) {
    const resident windowed(L"Veldrake.Comment.exe", "window VeldrakeResidentTest");
    const resident windowless(L"Veldrake.Paste.exe", "sleep");
    const resident hanging(L"Veldrake.MessageDialog.exe", "hang VeldrakeResidentTest");
    const resident host(L"dllhost.exe", "sleep");
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    ASSERT_TRUE(poll_until([] { return desktop::find_tray_icon().has_value(); }));

    PostMessageW(tray.window(), WM_COMMAND, ID_TRAY_EXIT, 0);
    EXPECT_TRUE(poll_until([] { return !desktop::find_tray_icon(); })) << "the icon goes first";
    EXPECT_TRUE(windowless.process().running()) << "the icon is gone while the residents still run";
    PostMessageW(tray.window(), WM_COMMAND, ID_TRAY_EXIT, 0);
    EXPECT_EQ(windowed.process().wait_exit(), 0u) << "closed through its window";
    bool answered = true;
    poll_until([&] {
        // At the end the window goes before the process does.
        answered = answered && (answers(tray.window()) || !IsWindow(tray.window()));
        return !windowless.process().running() && !hanging.process().running();
    });
    EXPECT_TRUE(answered) << "the window thread is free during the grace";
    EXPECT_EQ(windowless.process().wait_exit(), 1u) << "terminated after the grace";
    EXPECT_EQ(hanging.process().wait_exit(), 1u) << "terminated after the grace";
    EXPECT_EQ(tray.process().wait_exit(), 0u);
    EXPECT_TRUE(host.process().running()) << "a host without the suite's modules is left alone";
}

// At start the tray runs the controller's reconcile again until it succeeds and leaves a running hotkey
// handler alone. The first window of a new explorer.exe schedules one more reconcile (how many attempts,
// and that its later windows schedule none, are the core's). With no resident running, Exit ends the
// tray at once; the next start launches the hotkey handler. Wine has no AppX classes: a package file
// beside that tray cannot be read, which its package pass logs once, and it runs on.
TEST_F(housekeeping, reconciles_at_start_and_for_a_new_explorer_and_launches_the_hotkey_handler_once) {
    const auto folder = tray_exe().parent_path();
    const auto controller = folder / L"Veldrake.ContextMenuReplacement.Controller.exe";
    const auto runs = fresh_folder(L"controller") / L"record.txt";
    sibling_doubles::control(controller, runs, "1 0");
    const recorded_runs hotkey(L"Veldrake.HotkeyHandler.exe");
    const log_mark log(tray_log_file());
    const auto controller_runs = [&](size_t count) {
        poll_until([&] { return sibling_doubles::read_records(runs).size() >= count; }, 30s);
        return sibling_doubles::read_records(runs).size();
    };
    {
        const resident running_handler(L"Veldrake.HotkeyHandler.exe", "sleep");
        running_tray tray;
        ASSERT_NE(tray.window(), nullptr);
        EXPECT_EQ(controller_runs(2), 2u);
        const auto lines = log.messages();
        EXPECT_EQ(std::count_if(lines.begin(), lines.end(), [](const std::string& l) {
                      return l.starts_with("[INFO] Context Menu Replacement reconcile attempt ") &&
                             l.ends_with(" exited with code 1; retrying");
                  }), 1);

        const resident explorer(L"explorer.exe", "window CabinetWClass");
        EXPECT_EQ(controller_runs(3), 3u) << "the new Explorer's first window";
        const std::string noticed = "[INFO] [reinject] explorer.exe pid " + std::to_string(explorer.process().id()) +
                                    " appeared with a new CabinetWClass and has not been reconciled this session (not "
                                    "the shell process - a secondary Explorer); scheduling reconcile";
        EXPECT_EQ(log.count(noticed), 1u);

        PostMessageW(tray.window(), WM_COMMAND, ID_TRAY_EXIT, 0);
        EXPECT_EQ(tray.process().wait_exit(), 0u);
        EXPECT_TRUE(explorer.process().running()) << "Explorer is never ended";
    }
    EXPECT_TRUE(hotkey.wait(0).empty()) << "a handler was running";
    sibling_doubles::control(controller, runs);
    const auto package = folder / L"Veldrake.Corvane.msix";
    std::ofstream(package, std::ios::binary) << "not a package";
    const scope_exit remove([&] { std::filesystem::remove(package); });
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    EXPECT_EQ(hotkey.wait(1).size(), 1u);
    EXPECT_TRUE(poll_until(
        [&] { return log.count("[WARNING] Cannot read the package identity of " + to_utf8(package.wstring())) == 1; }));
    EXPECT_TRUE(answers(tray.window()));
    EXPECT_EQ(tray.close(), 0u);
    sibling_doubles::remove_control(controller);
}

// A file dialog of another program gets the controller's injection; a crash with the hook in records it
// and tells the user, and its next dialog is left alone. (That a clean end is no crash is the core's.)
TEST_F(housekeeping, a_file_dialog_is_served_until_its_program_crashes_with_the_hook_in) {
    const std::wstring crash_key = L"Software\\Kestrane\\Veldrake\\Corvane\\DialogCrashExclusions";
    const std::wstring program = L"veldrake_e2e_tests.exe";
    test_registry::delete_tree(HKEY_CURRENT_USER, crash_key);
    const auto controller = tray_exe().parent_path() / L"Veldrake.ContextMenuReplacement.Controller.exe";
    const auto runs = fresh_folder(L"dialog-controller") / L"record.txt";
    sibling_doubles::control(controller, runs);
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    const auto injections = [&] {
        auto records = sibling_doubles::read_records(runs);
        std::erase_if(records, [](const auto& r) { return r.command_line.find(L"inject-dialog") == std::wstring::npos; });
        return records;
    };
    const auto recorded = [&] { return test_registry::get_string(HKEY_CURRENT_USER, crash_key, program.c_str()); };
    for (const char* run : {"first", "after the crash"}) {
        SCOPED_TRACE(run);
        const size_t before = injections().size();
        child_process child = child_process::start(this_program(), L"--file-dialog");
        const unsigned long handles = child.handles_on_it();
        const HWND dialog = wait_for_window(child.id(), L"#32770");
        ASSERT_NE(dialog, nullptr);
        const bool served = recorded().empty();
        if (served) {
            ASSERT_TRUE(poll_until([&] { return injections().size() == before + 1; })) << "no injection request";
            EXPECT_TRUE(injections().back().command_line.ends_with(
                fmt::format(L" inject-dialog 0x{:X}", reinterpret_cast<uintptr_t>(dialog))));
            // The tray watches it through a handle of its own: only then can a crash be seen.
            EXPECT_TRUE(poll_until([&] { return child.handles_on_it() > handles; }));
        } else {
            EXPECT_FALSE(poll_until([&] { return injections().size() > before; }, 3s)) << "a recorded program is left alone";
        }
        EXPECT_TRUE(answers(tray.window()));
        child.terminate(0xC0000005);
        if (served) {
            EXPECT_TRUE(poll_until([&] { return recorded().ends_with(L" exit 0xC0000005"); })) << to_utf8(recorded());
            EXPECT_NE(wait_for_window(tray.process().id(), toast_utilities::NOTIFICATION_WINDOW_CLASS), nullptr)
                << "the toast";
        }
    }
    EXPECT_EQ(tray.close(), 0u);
    sibling_doubles::remove_control(controller);
    test_registry::delete_tree(HKEY_CURRENT_USER, crash_key);
}

