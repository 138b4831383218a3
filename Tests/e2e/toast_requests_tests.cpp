#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "toasts/notification_window_win32.h"
#include "toasts/tray_toast_ipc_win32.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

using namespace e2e;
using tray_toast_ipc::toast_click_action;

namespace {

HWND wait_for_notification(DWORD tray) { return wait_for_window(tray, toast_utilities::NOTIFICATION_WINDOW_CLASS); }

using toast_requests = tray_test;

}  // namespace

// A toast is drawn in the theme of its time and clicked with the real pointer: it starts what its request
// names, here the batch helper through the interpreter's "start", which may re-quote the line; what counts
// is what the helper receives. (Which action builds which command, a Settings tab through the real launch,
// each theme's colours and that a clicked toast ends are the core's and the Win32 tier's.) The tray finds
// a folder where its log file would be and answers all the same.
TEST_F(toast_requests, a_click_on_a_toast_starts_what_its_request_names) {
    std::filesystem::create_directories(tray_log_file());
    set_theme(true);
    running_tray tray;
    const recorded_runs runs(L"Tessary.Common.BatchProcessor.exe");
    const std::wstring icon = (tray_exe().parent_path() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring();
    ASSERT_TRUE(tray_toast_ipc::send_toast_request({icon, L"Veldrake", L"Add to index", L"Click to continue",
                                                    toast_click_action::add_to_index,
                                                    L"--subject:Photos\u0002C:\\\u0002\u0002D:\\Data\\"}));
    const HWND notification = wait_for_notification(tray.process().id());
    ASSERT_NE(notification, nullptr) << "no notification from the tray";
    RECT r{};
    GetWindowRect(notification, &r);
    EXPECT_TRUE(poll_until([&] {
        return desktop::find_colour({r.right - 8, r.bottom - 8, r.right - 4, r.bottom - 4}, 0x2B2B2B, 2).has_value();
    })) << "the dark background, once painted";
    ASSERT_TRUE(desktop::click({(r.left + r.right) / 2, (r.top + r.bottom) / 2}, 1));
    EXPECT_EQ(runs.wait(), (std::vector<std::vector<std::wstring>>{
                               {L"--add-index-scope", L"--subject:Photos", L"C:", L"D:\\Data"}}));
    EXPECT_TRUE(std::filesystem::is_directory(tray_log_file())) << "the tray never makes way for its log";
}

// A sibling that finds no tray starts one. The tray shows the toast if it is up within the sender's
// wait for it; if not (on a loaded machine a start under Wine can take longer), the sender shows it
// itself. Either way it shows once.
TEST_F(toast_requests, a_sender_that_finds_no_tray_starts_one_and_its_toast_shows_once) {
    child_process sender = child_process::start(this_program(), L"--send-toast Started \"By a sender\"");
    HWND tray = nullptr;
    ASSERT_TRUE(poll_until([&] { return (tray = FindWindowW(TRAY_WINDOW_CLASS, nullptr)) != nullptr; })) << "no tray";
    DWORD tray_process = 0;
    GetWindowThreadProcessId(tray, &tray_process);
    bool in_tray = false, in_sender = false;
    EXPECT_TRUE(poll_until([&] {
        in_tray = !windows_of(tray_process, toast_utilities::NOTIFICATION_WINDOW_CLASS).empty();
        in_sender = !windows_of(sender.id(), toast_utilities::NOTIFICATION_WINDOW_CLASS).empty();
        return in_tray || in_sender;
    })) << "no toast";
    EXPECT_NE(in_tray, in_sender) << "shown once";
    if (in_tray) {
        EXPECT_EQ(sender.wait_exit(std::chrono::seconds(10)), 0u) << "a sender that reached the tray shows nothing";
    }
    sender.terminate();
}
