#include "common/wine_process_win32.h"
#include "dialogs/message_dialog_win32.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

using namespace common_dialogs;
using test_support::poll_until;

namespace {

// Runs `show` on a thread of its own, hands the window it opens to `drive`, then clicks `end_with`
// (even when `drive` gave up early) and gives back what `show` returned.
int run_dialog(const std::function<int()>& show, const std::function<void(HWND)>& drive, int end_with = ID_MESSAGE_OK) {
    std::atomic<int> result{-100};
    std::thread runner([&] { result = show(); });
    // Visible only once its controls are made.
    const HWND window = test_support::wait_for_window(GetCurrentProcessId(), L"#32770");
    if (window) {
        drive(window);
        PostMessageW(GetDlgItem(window, end_with), BM_CLICK, 0, 0);
    }
    runner.join();
    return window ? result.load() : -200;
}

// The test opens the clipboard for a window of its own, as another program would: Wine lets an open
// for no window take over a clipboard that another thread opened for no window, which would spoil
// the dialog's copy half way.
HWND clipboard_reader() {
    static const HWND reader = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    return reader;
}

// The clipboard's text; "(none)" while another thread holds it or it has none.
std::wstring clipboard_text() {
    std::wstring text = L"(none)";
    if (!OpenClipboard(clipboard_reader())) return text;
    if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
        text = static_cast<const wchar_t*>(GlobalLock(data));
        GlobalUnlock(data);
    }
    CloseClipboard();
    return text;
}

}  // namespace

// Without its copy button here, which the other tests show.
TEST(message_dialog, seven_lines_show_in_a_static_and_eight_scroll_in_an_edit_of_seven_lines) {
    for (const int count : {7, 8}) {
        SCOPED_TRACE(count);
        std::wstring text = L"line 1";
        for (int i = 2; i <= count; ++i) text += L"\nline " + std::to_wstring(i);
        message_dialog dialog(text, false);
        dialog.show_copy = false;
        run_dialog([&] { return dialog.show(nullptr); }, [&](HWND window) {
            EXPECT_EQ(GetDlgItem(window, ID_MESSAGE_COPY), nullptr);
            const HWND text_static = FindWindowExW(window, nullptr, L"Static", nullptr);
            const HWND edit = FindWindowExW(window, nullptr, L"Edit", nullptr);
            if (count == 7) {
                ASSERT_TRUE(text_static && !edit);
                EXPECT_EQ(GetWindowLongPtrW(text_static, GWL_STYLE) & SS_NOPREFIX, SS_NOPREFIX);
                return;
            }
            ASSERT_TRUE(edit && !text_static);
            const DWORD scrolling = ES_READONLY | ES_MULTILINE | WS_VSCROLL;
            EXPECT_EQ(GetWindowLongPtrW(edit, GWL_STYLE) & scrolling, scrolling);
            // Seven whole lines show: at the bottom of the eight, the second is the first in view.
            SendMessageW(edit, WM_VSCROLL, SB_BOTTOM, 0);
            EXPECT_EQ(SendMessageW(edit, EM_GETFIRSTVISIBLELINE, 0, 0), 1);
            EXPECT_EQ(test_support::window_text(edit).find(L"\r\n"), 6u) << "CRLF in the edit";
        });
    }
}

TEST(message_dialog, buttons_read_ok_no_cancel_from_the_left_and_ok_or_cancel_read_the_check_box) {
    // By keys: Tab from OK wraps to the check box, Space ticks it and Enter is OK.
    const struct { int id; bool check_result, by_keys; } cases[] = {
        {ID_MESSAGE_OK, true, false}, {ID_MESSAGE_NO, false, false}, {ID_MESSAGE_CANCEL, true, false}, {ID_MESSAGE_OK, true, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.id << (c.by_keys ? " by keys" : ""));
        message_dialog dialog(L"Add this folder to the index?", true);
        dialog.show_check = dialog.show_no = true;
        const auto drive = [&](HWND window) {
            const auto at = [&](int id) {
                RECT r{};
                GetWindowRect(GetDlgItem(window, id), &r);
                return r;
            };
            // The places come from the layout, tested natively; here each button has its own.
            EXPECT_LT(at(ID_MESSAGE_OK).right, at(ID_MESSAGE_NO).left);
            EXPECT_LT(at(ID_MESSAGE_NO).right, at(ID_MESSAGE_CANCEL).left);
            EXPECT_EQ(test_support::window_text(GetDlgItem(window, ID_MESSAGE_CHECK)), L"Do this for &all current items");
            if (!c.by_keys) return (void)SendDlgItemMessageW(window, ID_MESSAGE_CHECK, BM_SETCHECK, BST_CHECKED, 0);
            const HWND check = GetDlgItem(window, ID_MESSAGE_CHECK);
            PostMessageW(GetDlgItem(window, ID_MESSAGE_OK), WM_KEYDOWN, VK_TAB, 0);
            GUITHREADINFO gui{};
            gui.cbSize = sizeof(gui);
            EXPECT_TRUE(poll_until([&] {
                return GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &gui) && gui.hwndFocus == check;
            })) << "Tab reaches the check box";
            for (const UINT message : {WM_KEYDOWN, WM_KEYUP}) PostMessageW(check, message, VK_SPACE, 0);
            PostMessageW(check, WM_KEYDOWN, VK_RETURN, 0);
            EXPECT_TRUE(poll_until([&] { return !IsWindow(window); })) << "Enter ends the dialog";
        };
        EXPECT_EQ(run_dialog([&] { return dialog.show(nullptr); }, drive, c.id), c.id);
        EXPECT_EQ(dialog.check_result, c.check_result);
    }
}

TEST(message_dialog, ctrl_c_and_the_copy_button_copy_the_text_itself) {
    const std::wstring text = L"First line\nsecond line\rthird";
    message_dialog dialog(text, false);
    dialog.bring_to_front = true;
    run_dialog([&] { return dialog.show(nullptr); }, [&](HWND window) {
        ASSERT_TRUE(poll_until([&] { return GetForegroundWindow() == window; })) << "brought to the front";
        INPUT keys[4] = {{INPUT_KEYBOARD, {.ki = {VK_CONTROL, 0, 0, 0, 0}}}, {INPUT_KEYBOARD, {.ki = {'C', 0, 0, 0, 0}}},
                         {INPUT_KEYBOARD, {.ki = {'C', 0, KEYEVENTF_KEYUP, 0, 0}}},
                         {INPUT_KEYBOARD, {.ki = {VK_CONTROL, 0, KEYEVENTF_KEYUP, 0, 0}}}};
        ASSERT_EQ(SendInput(4, keys, sizeof(INPUT)), 4u);
        EXPECT_TRUE(poll_until([&] { return clipboard_text() == text; }, std::chrono::seconds(5)))
            << "Ctrl+C; the clipboard has " << testing::PrintToString(clipboard_text());
        ASSERT_TRUE(copy_text_to_clipboard(L"before"));
        // A reader that holds the clipboard while the button is clicked does not lose the copy.
        ASSERT_TRUE(OpenClipboard(clipboard_reader()));
        PostMessageW(GetDlgItem(window, ID_MESSAGE_COPY), BM_CLICK, 0, 0);
        Sleep(60);
        CloseClipboard();
        EXPECT_TRUE(poll_until([&] { return clipboard_text() == text; }, std::chrono::seconds(5))) << "copy button";
    });
}
