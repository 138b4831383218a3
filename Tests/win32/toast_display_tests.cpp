#include "common/wine_process_win32.h"
#include "platform/com_ptr_win32.h"
#include "toasts/notification_window_win32.h"
#include "toasts/toast_utilities_win32.h"
#include "win32/test_log_win32.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using test_support::poll_until;

namespace {

// Watches for the notification window from another thread, as the user's eye would.
struct watcher {
    std::atomic<HWND> window{nullptr};
    RECT rect{};
    std::thread thread;

    void start(bool click) {
        thread = std::thread([this, click] {
            poll_until([&] { return (window = FindWindowW(toast_utilities::NOTIFICATION_WINDOW_CLASS, nullptr)) != nullptr; });
            if (!window) return;
            poll_until([&] { return IsWindowVisible(window.load()) != FALSE; });
            GetWindowRect(window, &rect);
            if (click) PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
        });
    }
    void join() { thread.join(); }
};

const std::wstring logo = L"Content\\Icons\\veldrake-logo-ai.ico";

}  // namespace

TEST(toast_display, clicked_notification_runs_its_action_once_and_ends) {
    com_scope com;
    watcher eye;
    eye.start(true);
    int clicks = 0;
    const size_t mark = test_log_lines().size();
    toast_utilities::show_toast(logo, L"Veldrake", L"Context menu", L"Click to open the settings", [&] { ++clicks; }, {});
    eye.join();
    EXPECT_EQ(clicks, 1);
    ASSERT_NE(eye.window.load(), nullptr) << "a notification window was shown";
    EXPECT_FALSE(IsWindow(eye.window)) << "and is gone";

    // At the bottom right of the work area.
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_GT(eye.rect.right, work.right - 40);
    EXPECT_GT(eye.rect.bottom, work.bottom - 40);
    EXPECT_LE(eye.rect.right, work.right);
    EXPECT_LE(eye.rect.bottom, work.bottom);
    for (const auto& message : test_log_messages_since(mark)) EXPECT_EQ(message.find("[ERROR]"), std::string::npos) << message;
}

TEST(toast_display, should_continue_ends_the_notification_at_a_poll_without_a_log_line) {
    com_scope com;
    watcher eye;
    eye.start(false);
    std::atomic<int> polls = 0;
    const size_t mark = test_log_lines().size();
    toast_utilities::show_toast(L"", L"", L"Title", L"Text", {}, [&] { return ++polls < 3; });
    eye.join();
    EXPECT_EQ(polls, 3) << "asked every poll until it said no";
    EXPECT_NE(eye.window.load(), nullptr);
    for (const auto& message : test_log_messages_since(mark)) {
        EXPECT_EQ(message.find("[ERROR]"), std::string::npos) << "the normal end is not an error: " << message;
    }
}

TEST(toast_display, missing_icon_is_a_warning_and_the_notification_still_shows) {
    com_scope com;
    watcher eye;
    eye.start(true);
    const size_t mark = test_log_lines().size();
    toast_utilities::show_toast(L"C:\\nowhere\\missing.ico", L"tip", L"Title", L"Text", [] {}, {});
    eye.join();
    EXPECT_NE(eye.window.load(), nullptr);
    const auto messages = test_log_messages_since(mark);
    const auto warning = std::find_if(messages.begin(), messages.end(), [](const std::string& m) {
        return m.rfind("[WARNING] show_toast: failed to load icon C:\\nowhere\\missing.ico (error ", 0) == 0;
    });
    EXPECT_NE(warning, messages.end());
}

TEST(toast_display, what_the_click_action_throws_reaches_the_caller_once_the_notification_is_gone) {
    com_scope com;
    watcher eye;
    eye.start(true);
    EXPECT_THROW(toast_utilities::show_toast(L"", L"", L"Title", L"Text", [] { throw std::runtime_error("clicked"); }, {}),
                 std::runtime_error);
    eye.join();
    ASSERT_NE(eye.window.load(), nullptr);
    EXPECT_FALSE(IsWindow(eye.window));
}
