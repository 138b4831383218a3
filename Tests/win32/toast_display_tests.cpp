#include "common/wine_process_win32.h"
#include "platform/com_ptr_win32.h"
#include "platform/string_conversion.h"
#include "toasts/notification_window_win32.h"
#include "toasts/toast_utilities_win32.h"
#include "win32/test_log_win32.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace {

// Looks for the notification window from another thread, as the user's eye would, and clicks it if asked.
struct watcher {
    explicit watcher(bool click)
        : thread([this, click] {
              window = test_support::wait_for_window(GetCurrentProcessId(), toast_utilities::NOTIFICATION_WINDOW_CLASS);
              if (!window) return;
              if (click) PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
          }) {}
    std::atomic<HWND> window{nullptr};
    std::thread thread;  // last: it starts once the fields it writes exist
};

const std::wstring logo = L"Content\\Icons\\veldrake-logo-ai.ico";

}  // namespace

// A notification ends when clicked, running its action once, or when `should_continue` says no at a
// poll. An icon that cannot be loaded is only a warning, and no normal end is an error.
TEST(toast_display, ends_once_clicked_or_at_a_poll_and_a_missing_icon_is_only_a_warning) {
    com_scope com;
    const struct { std::wstring icon; bool click; } cases[] = {
        {L"C:\\nowhere\\missing.ico", true}, {logo, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(to_utf8(c.icon) + (c.click ? " clicked" : " polled"));
        watcher eye(c.click);
        int clicks = 0;
        std::atomic<int> polls = 0;
        const test_support::log_mark mark(test_log_path());
        toast_utilities::show_toast(c.icon, L"Veldrake", L"Context menu", L"Click to open the settings", [&] { ++clicks; },
                                    c.click ? std::function<bool()>() : [&] { return ++polls < 3; });
        eye.thread.join();
        EXPECT_EQ(clicks, c.click ? 1 : 0);
        EXPECT_EQ(polls, c.click ? 0 : 3) << "asked every poll until it said no";
        ASSERT_NE(eye.window.load(), nullptr) << "a notification window was shown";
        EXPECT_FALSE(IsWindow(eye.window)) << "and is gone";
        const auto messages = mark.messages();
        const std::string warning = "[WARNING] show_toast: failed to load icon " + to_utf8(c.icon) + " (error ";
        EXPECT_EQ(std::count_if(messages.begin(), messages.end(), [&](const std::string& m) { return m.rfind(warning, 0) == 0; }),
                  c.icon == logo ? 0 : 1);
        for (const auto& message : messages) EXPECT_EQ(message.find("[ERROR]"), std::string::npos) << message;
    }
}

TEST(toast_display, what_the_click_action_throws_reaches_the_caller_once_the_notification_is_gone) {
    com_scope com;
    watcher eye(true);
    EXPECT_THROW(toast_utilities::show_toast(L"", L"", L"Title", L"Text", [] { throw std::runtime_error("clicked"); }, {}),
                 std::runtime_error);
    eye.thread.join();
    ASSERT_NE(eye.window.load(), nullptr);
    EXPECT_FALSE(IsWindow(eye.window));
}
