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

bool sent(toast_click_action action, const std::wstring& arg, const std::wstring& title) {
    return tray_toast_ipc::send_toast_request({(tray_exe().parent_path() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring(),
                                               L"Veldrake", title, L"Click to continue", action, arg});
}

using toast_requests = tray_test;

}  // namespace

// Each toast is drawn in the theme of its time, kept as a picture and clicked with the real pointer. (That
// a clicked notification ends: the Win32 tier.)
TEST_F(toast_requests, a_click_on_a_toast_starts_what_its_request_names) {
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    const struct {
        bool dark;
        const wchar_t *program, *title;
        toast_click_action action;
        std::wstring arg;
        std::vector<std::wstring> arguments;
    } cases[] = {
        {false, L"Veldrake.exe", L"Context menu", toast_click_action::open_settings_tab, L"context-menu-replacement",
         {L"--open-tab=context-menu-replacement"}},
        // The interpreter's "start" may re-quote the line; what counts is what the helper receives.
        {true, L"Tessary.Common.BatchProcessor.exe", L"Add to index", toast_click_action::add_to_index,
         L"--subject:Photos\u0002C:\\\u0002\u0002D:\\Data\\", {L"--add-index-scope", L"--subject:Photos", L"C:", L"D:\\Data"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.dark ? "dark" : "light");
        set_theme(c.dark);
        const recorded_runs runs(c.program);
        ASSERT_TRUE(sent(c.action, c.arg, c.title));
        const HWND notification = wait_for_notification(tray.process().id());
        ASSERT_NE(notification, nullptr) << "no notification from the tray";
        RECT r{};
        GetWindowRect(notification, &r);
        EXPECT_TRUE(poll_until([&] {
            return desktop::find_colour({r.right - 8, r.bottom - 8, r.right - 4, r.bottom - 4}, c.dark ? 0x2B2B2B : 0xF9F9F9, 2)
                .has_value();
        })) << "the background, once painted";
        desktop::keep_picture(c.dark ? L"toast-dark" : L"toast-light", r);
        ASSERT_TRUE(desktop::click({(r.left + r.right) / 2, (r.top + r.bottom) / 2}, 1));
        EXPECT_EQ(runs.wait(), std::vector<std::vector<std::wstring>>{c.arguments});
    }
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
