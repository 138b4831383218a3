#include "common/test_registry_win32.h"
#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "platform/scope_exit.h"
#include "platform/string_conversion.h"
#include "toasts/notification_window_win32.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

#include <fmt/xchar.h>

#include <fstream>

using namespace e2e;
using namespace std::chrono_literals;

using housekeeping = tray_test;

// A file dialog of another program gets the controller's injection; a crash with the hook in records it
// and tells the user, and its next dialog is left alone. (That a clean end is no crash is the core's.)
// Then Exit takes the icon away at once, asks a resident with a window to close, terminates one that
// hangs in its window procedure after the grace (one without a window goes the same road), leaves a
// surrogate host without the suite's modules alone, and only then ends the tray; a second Exit meanwhile
// starts nothing new, and the tray's window answers throughout.
TEST_F(housekeeping, a_crashed_file_dialog_is_left_alone_and_exit_ends_the_residents_after_the_icon_and_before_the_tray) {
    const resident windowed(L"Veldrake.Comment.exe", "window VeldrakeResidentTest");
    const resident hanging(L"Veldrake.MessageDialog.exe", "hang VeldrakeResidentTest");
    const resident host(L"dllhost.exe", "sleep");
    const std::wstring crash_key = L"Software\\Kestrane\\Veldrake\\Corvane\\DialogCrashExclusions";
    const std::wstring program = L"veldrake_e2e_tests.exe";
    test_registry::delete_tree(HKEY_CURRENT_USER, crash_key);
    const scope_exit forget([&] { test_registry::delete_tree(HKEY_CURRENT_USER, crash_key); });
    const recorded_runs controller(L"Veldrake.ContextMenuReplacement.Controller.exe");
    running_tray tray;
    ASSERT_TRUE(poll_until([] { return desktop::find_tray_icon().has_value(); }));
    const auto injections = [&] {
        auto records = controller.records();
        std::erase_if(records, [](const auto& r) { return r.command_line.find(L"inject-dialog") == std::wstring::npos; });
        return records;
    };
    const auto recorded = [&] { return test_registry::get_string(HKEY_CURRENT_USER, crash_key, program.c_str()); };
    child_process child = child_process::start(this_program(), L"--file-dialog");
    const unsigned long handles = child.handles_on_it();
    const HWND dialog = wait_for_window(child.id(), L"#32770");
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(poll_until([&] { return injections().size() == 1; })) << "no injection request";
    EXPECT_TRUE(injections().back().command_line.ends_with(
        fmt::format(L" inject-dialog 0x{:X}", reinterpret_cast<uintptr_t>(dialog))));
    // The tray watches it through a handle of its own: only then can a crash be seen.
    EXPECT_TRUE(poll_until([&] { return child.handles_on_it() > handles; }));
    EXPECT_TRUE(answers(tray.window()));
    child.terminate(0xC0000005);
    EXPECT_TRUE(poll_until([&] { return recorded().ends_with(L" exit 0xC0000005"); })) << to_utf8(recorded());
    EXPECT_NE(wait_for_window(tray.process().id(), toast_utilities::NOTIFICATION_WINDOW_CLASS), nullptr)
        << "the toast";
    child = child_process::start(this_program(), L"--file-dialog");
    ASSERT_NE(wait_for_window(child.id(), L"#32770"), nullptr);
    EXPECT_FALSE(poll_until([&] { return injections().size() > 1; }, 3s)) << "a recorded program is left alone";
    child.terminate();

    PostMessageW(tray.window(), WM_COMMAND, ID_TRAY_EXIT, 0);
    EXPECT_TRUE(poll_until([] { return !desktop::find_tray_icon(); })) << "the icon goes first";
    EXPECT_TRUE(hanging.process().running()) << "the icon is gone while the residents still run";
    PostMessageW(tray.window(), WM_COMMAND, ID_TRAY_EXIT, 0);
    EXPECT_EQ(windowed.process().wait_exit(), 0u) << "closed through its window";
    bool answered = true;
    poll_until([&] {
        // At the end the window goes before the process does.
        answered = answered && (answers(tray.window()) || !IsWindow(tray.window()));
        return !hanging.process().running();
    });
    EXPECT_TRUE(answered) << "the window thread is free during the grace";
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
    const recorded_runs controller(L"Veldrake.ContextMenuReplacement.Controller.exe");
    controller.exit_with("1 0");
    const recorded_runs hotkey(L"Veldrake.HotkeyHandler.exe");
    const log_mark log(tray_log_file());
    {
        const resident running_handler(L"Veldrake.HotkeyHandler.exe", "sleep");
        running_tray tray;
        EXPECT_EQ(controller.wait(2).size(), 2u) << "a failed reconcile is tried again";
        const resident explorer(L"explorer.exe", "window CabinetWClass");
        EXPECT_EQ(controller.wait(3).size(), 3u) << "the new Explorer's first window";

        PostMessageW(tray.window(), WM_COMMAND, ID_TRAY_EXIT, 0);
        EXPECT_EQ(tray.process().wait_exit(), 0u);
        EXPECT_TRUE(explorer.process().running()) << "Explorer is never ended";
    }
    EXPECT_TRUE(hotkey.wait(0).empty()) << "a handler was running";
    controller.exit_with("0");
    const auto package = tray_exe().parent_path() / L"Veldrake.Corvane.msix";
    std::ofstream(package, std::ios::binary) << "not a package";
    const scope_exit remove([&] { std::filesystem::remove(package); });
    running_tray tray;
    EXPECT_EQ(hotkey.wait(1).size(), 1u);
    EXPECT_TRUE(poll_until(
        [&] { return log.count("[WARNING] Cannot read the package identity of " + to_utf8(package.wstring())) == 1; }));
    EXPECT_TRUE(answers(tray.window()));
    EXPECT_EQ(tray.close(), 0u);
}
