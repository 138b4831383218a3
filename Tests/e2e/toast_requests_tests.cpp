#include "common/test_registry_win32.h"
#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "platform/unique_resource_win32.h"
#include "toasts/notification_window_win32.h"
#include "toasts/tray_toast_ipc_win32.h"
#include "tray_messages.h"

#include <psapi.h>

#include <gtest/gtest.h>


using namespace e2e;
using tray_toast_ipc::toast_click_action;

namespace {

HWND wait_for_notification(DWORD tray) { return wait_for_window(tray, toast_utilities::NOTIFICATION_WINDOW_CLASS); }

// Keeps a picture of the notification and clicks its middle with the real pointer, as a person would.
void picture_and_click(HWND window, const wchar_t* name, bool click = true) {
    RECT r{};
    GetWindowRect(window, &r);
    desktop::keep_picture(name, r);
    if (click) EXPECT_TRUE(desktop::click({(r.left + r.right) / 2, (r.top + r.bottom) / 2}, 1));
}

LRESULT send_copy_data(HWND tray, ULONG_PTR id, const wchar_t* payload, DWORD bytes) {
    COPYDATASTRUCT copy{id, bytes, const_cast<wchar_t*>(payload)};
    DWORD_PTR reply = 99;
    SendMessageTimeoutW(tray, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy), SMTO_BLOCK | SMTO_ABORTIFHUNG, 5000, &reply);
    return static_cast<LRESULT>(reply);
}

bool sent(toast_click_action action, const std::wstring& arg, const std::wstring& title) {
    return tray_toast_ipc::send_toast_request({(tray_exe().parent_path() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring(),
                                               L"Veldrake", title, L"Click to continue", action, arg});
}

// A tray started by someone else (the sender) ends through its window.
void close_any_tray() {
    if (HWND tray = FindWindowW(TRAY_WINDOW_CLASS, nullptr)) PostMessageW(tray, WM_CLOSE, 0, 0);
    poll_until([] { return FindWindowW(TRAY_WINDOW_CLASS, nullptr) == nullptr; });
}

const std::wstring personalize = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";

class toast_requests : public testing::Test {
protected:
    void SetUp() override {
        close_any_tray();
        reset_tray_state();
    }
    void TearDown() override {
        desktop::click_empty_desktop();
        test_registry::delete_value(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme");
        close_any_tray();
        reset_tray_state();
    }
};

}  // namespace

TEST_F(toast_requests, refused_messages_answer_0_and_only_a_malformed_request_is_logged) {
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    const size_t before = read_lines(tray_log_file()).size();
    const std::wstring good = tray_toast_ipc::encode_toast_request({L"", L"", L"t", L"x", toast_click_action::none, L""});
    const DWORD bytes = 2 * (good.size() + 1);
    const auto id = tray_toast_ipc::TOAST_COPYDATA_ID;
    EXPECT_EQ(send_copy_data(tray.window(), 0x4B445655, good.c_str(), bytes), 0) << "another dwData";
    EXPECT_EQ(send_copy_data(tray.window(), id, nullptr, 0), 0) << "no data";
    EXPECT_EQ(send_copy_data(tray.window(), id, good.c_str(), 1), 0) << "cbData 1";
    EXPECT_EQ(read_lines(tray_log_file()).size(), before) << "refused silently";

    const std::wstring six_fields = L"1\u0001\u0001\u0001title\u0001text\u00010";
    EXPECT_EQ(send_copy_data(tray.window(), id, six_fields.c_str(), 2 * (six_fields.size() + 1)), 0);
    const auto lines = read_lines(tray_log_file());
    ASSERT_EQ(lines.size(), before + 1);
    EXPECT_NE(lines.back().find("[WARNING] toast_dispatcher: ignoring a malformed toast request"), std::string::npos);
}

TEST_F(toast_requests, a_click_on_a_toast_starts_what_its_request_names) {
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    const struct {
        const wchar_t *program, *title, *picture;
        toast_click_action action;
        std::wstring arg;
        std::vector<std::wstring> arguments;
    } cases[] = {
        {L"Veldrake.exe", L"Context menu", L"toast-light", toast_click_action::open_settings_tab, L"context-menu-replacement",
         {L"--open-tab=context-menu-replacement"}},
        // The interpreter's "start" may re-quote the line; what counts is what the helper receives.
        {L"Tessary.Common.BatchProcessor.exe", L"Add to index", L"toast-add-to-index", toast_click_action::add_to_index,
         L"--subject:Photos\u0002C:\\\u0002\u0002D:\\Data\\", {L"--add-index-scope", L"--subject:Photos", L"C:", L"D:\\Data"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.picture)));
        const recorded_runs runs(c.program);
        ASSERT_TRUE(sent(c.action, c.arg, c.title));
        const HWND notification = wait_for_notification(tray.process().id());
        ASSERT_NE(notification, nullptr) << "no notification from the tray";
        picture_and_click(notification, c.picture);
        EXPECT_EQ(runs.wait(), std::vector<std::vector<std::wstring>>{c.arguments});
        EXPECT_TRUE(poll_until([&] { return !IsWindow(notification); })) << "the clicked notification stays";
    }
}

// A sibling that finds no tray starts one. The tray shows the toast if it is up within the sender's
// wait for it; if not (on a loaded machine a start under Wine can take longer), the sender shows it
// itself. Either way it shows once.
TEST_F(toast_requests, a_sender_that_finds_no_tray_starts_one_and_its_toast_shows_once) {
    child_process sender = child_process::start(this_program(), L"--send-toast Started \"By a sender\" 0 x");
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
    if (in_tray) EXPECT_EQ(sender.wait_exit(std::chrono::seconds(10)), 0u) << "a sender that reached the tray shows nothing";
    sender.terminate();
}

// Another program ending the tray politely posts WM_CLOSE to each of its windows, the notification too.
TEST_F(toast_requests, a_notification_closed_from_outside_is_dismissed_and_the_tray_goes_on) {
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    ASSERT_TRUE(sent(toast_click_action::none, L"", L"First"));
    const HWND first = wait_for_notification(tray.process().id());
    ASSERT_NE(first, nullptr);
    PostMessageW(first, WM_CLOSE, 0, 0);
    EXPECT_TRUE(poll_until([&] { return !IsWindow(first); }));
    ASSERT_TRUE(sent(toast_click_action::none, L"", L"Second"));
    EXPECT_NE(wait_for_notification(tray.process().id()), nullptr) << "the dispatcher shows the next one";
    EXPECT_EQ(tray.close(), 0u) << "and stops at its next poll";
}

TEST_F(toast_requests, a_flood_from_four_senders_leaves_the_tray_responsive_and_its_memory_flat) {
    test_registry::set_dword(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme", 0);
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    // A first toast shows, in the dark theme, so the flood meets a busy dispatcher.
    ASSERT_TRUE(sent(toast_click_action::none, L"", L"Dark theme"));
    const HWND notification = wait_for_notification(tray.process().id());
    ASSERT_NE(notification, nullptr);
    picture_and_click(notification, L"toast-dark", false);
    RECT r{};
    GetWindowRect(notification, &r);
    const uint32_t rgb = desktop::capture({r.right - 8, r.bottom - 8, r.right - 4, r.bottom - 4}).at(r.right - 6, r.bottom - 6);
    EXPECT_LT(((rgb >> 16) & 0xFF) + ((rgb >> 8) & 0xFF) + (rgb & 0xFF), 3u * 96) << "a dark background";

    const unique_handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, tray.process().id()));
    const auto private_bytes = [&] {
        PROCESS_MEMORY_COUNTERS_EX counters{};
        GetProcessMemoryInfo(process.get(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof(counters));
        return counters.PrivateUsage;
    };
    const SIZE_T before = private_bytes();
    std::vector<child_process> senders;
    for (const wchar_t* tag : {L"a", L"b", L"c", L"d"}) {
        senders.push_back(child_process::start(this_program(), std::wstring(L"--flood 2500 ") + tag));
    }
    // A sender exits 1 unless the tray took every request within the sender's 2 s wait for an answer.
    for (const auto& sender : senders) EXPECT_EQ(sender.wait_exit(std::chrono::minutes(2)), 0u) << "every request was taken";
    EXPECT_LT(private_bytes(), before + 8 * 1024 * 1024) << "at most three requests wait: memory stays flat";
}
