#include "common/test_registry_win32.h"
#include "common/wine_process_win32.h"
#include "dialogs/message_dialog_win32.h"
#include "dialogs/theme_helpers_win32.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

using namespace common_dialogs;
using test_support::poll_until;

namespace {

struct child {
    std::wstring window_class;
    int id = 0;
    DWORD style = 0;
    RECT rect{};  // in the dialog's client coordinates
    std::wstring text;
};

std::wstring class_of(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

std::vector<child> children_of(HWND dialog) {
    std::vector<child> found;
    for (HWND w = GetWindow(dialog, GW_CHILD); w; w = GetWindow(w, GW_HWNDNEXT)) {
        child c;
        c.window_class = class_of(w);
        c.id = GetDlgCtrlID(w);
        c.style = static_cast<DWORD>(GetWindowLongPtrW(w, GWL_STYLE));
        GetWindowRect(w, &c.rect);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&c.rect), 2);
        wchar_t text[512] = {};
        GetWindowTextW(w, text, 512);
        c.text = text;
        found.push_back(c);
    }
    return found;
}

const child* find_class(const std::vector<child>& children, const wchar_t* window_class) {
    for (const child& c : children) {
        if (_wcsicmp(c.window_class.c_str(), window_class) == 0) return &c;
    }
    return nullptr;
}

const child* find_id(const std::vector<child>& children, int id) {
    for (const child& c : children) {
        if (c.id == id) return &c;
    }
    return nullptr;
}

// Shows `dialog` on a thread of its own, hands its window to `drive`, which must end it, and gives
// back what show() returned.
int run_dialog(message_dialog& dialog, const std::function<void(HWND)>& drive) {
    std::atomic<DWORD> thread_id{0};
    std::atomic<int> result{-100};
    std::thread runner([&] {
        thread_id = GetCurrentThreadId();
        result = dialog.show(nullptr);
    });
    HWND window = nullptr;
    poll_until([&] {
        if (thread_id == 0) return false;
        EnumThreadWindows(
            thread_id,
            [](HWND w, LPARAM found) -> BOOL {
                if (class_of(w) == L"#32770" && IsWindowVisible(w)) {
                    *reinterpret_cast<HWND*>(found) = w;
                    return FALSE;
                }
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&window));
        return window != nullptr;
    });
    if (window) {
        drive(window);
    }
    runner.join();
    return window ? result.load() : -200;
}

std::wstring lines(int count) {
    std::wstring text;
    for (int i = 1; i <= count; ++i) text += (i > 1 ? L"\nline " : L"line ") + std::to_wstring(i);
    return text;
}

std::optional<std::wstring> clipboard_text() {
    std::optional<std::wstring> text;
    for (int attempt = 0; attempt < 50 && !OpenClipboard(nullptr); ++attempt) Sleep(20);
    if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
        if (const auto* chars = static_cast<const wchar_t*>(GlobalLock(data))) {
            text = chars;
            GlobalUnlock(data);
        }
    }
    CloseClipboard();
    return text;
}

int line_height_of(HWND control) {
    const auto font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
    const HDC dc = GetDC(control);
    const HGDIOBJ old = SelectObject(dc, font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, old);
    ReleaseDC(control, dc);
    return metrics.tmHeight + metrics.tmExternalLeading;
}

void click(HWND dialog, int id) { PostMessageW(GetDlgItem(dialog, id), BM_CLICK, 0, 0); }

}  // namespace

TEST(message_dialog, seven_lines_show_in_a_static_and_eight_scroll_in_an_edit_of_seven_lines) {
    for (const int count : {1, 7, 8, 30}) {
        SCOPED_TRACE(fmt::format("{} lines", count));
        message_dialog dialog(lines(count), false);
        const int result = run_dialog(dialog, [&](HWND window) {
            const auto children = children_of(window);
            const child* text_static = find_class(children, L"Static");
            const child* text_edit = find_class(children, L"Edit");
            if (count <= 7) {
                ASSERT_NE(text_static, nullptr);
                EXPECT_EQ(text_edit, nullptr);
                EXPECT_EQ(text_static->style, 0x50022080u);
                EXPECT_EQ(text_static->text, lines(count));
            } else {
                ASSERT_NE(text_edit, nullptr);
                EXPECT_EQ(text_static, nullptr);
                // The edit draws its own border in place of WS_BORDER.
                EXPECT_EQ(text_edit->style & (0x50A10844u & ~WS_BORDER), 0x50A10844u & ~WS_BORDER);
                const int expected = line_height_of(GetDlgItem(window, text_edit->id)) * 7 + 2 * GetSystemMetrics(SM_CYEDGE);
                EXPECT_EQ(text_edit->rect.bottom - text_edit->rect.top, expected);
                EXPECT_EQ(text_edit->text.find(L"\r\n"), std::wstring(L"line 1").size()) << "CRLF in the edit";
            }
            click(window, ID_MESSAGE_OK);
        });
        EXPECT_EQ(result, ID_MESSAGE_OK);
    }
}

TEST(message_dialog, buttons_read_ok_no_cancel_from_the_left_and_each_ends_with_its_id) {
    for (const int id : {ID_MESSAGE_OK, ID_MESSAGE_NO, ID_MESSAGE_CANCEL}) {
        SCOPED_TRACE(id);
        message_dialog dialog(L"Restart the search service?", true);
        dialog.show_no = true;
        dialog.ok_text = L"Restart";
        dialog.title = L"Veldrake";
        const int result = run_dialog(dialog, [&](HWND window) {
            const auto children = children_of(window);
            const child* ok = find_id(children, ID_MESSAGE_OK);
            const child* no = find_id(children, ID_MESSAGE_NO);
            const child* cancel = find_id(children, ID_MESSAGE_CANCEL);
            const child* copy = find_id(children, ID_MESSAGE_COPY);
            ASSERT_TRUE(ok && no && cancel && copy);
            EXPECT_LT(copy->rect.right, ok->rect.left);
            EXPECT_LT(ok->rect.right, no->rect.left);
            EXPECT_LT(no->rect.right, cancel->rect.left);
            EXPECT_EQ(ok->rect.top, cancel->rect.top);
            EXPECT_EQ(ok->text, L"Restart");
            EXPECT_EQ(ok->style, 0x50010001u);
            EXPECT_EQ(cancel->style, 0x50010000u);
            EXPECT_EQ(copy->rect.right - copy->rect.left, copy->rect.bottom - copy->rect.top) << "a square";
            RECT client{};
            GetClientRect(window, &client);
            EXPECT_EQ(client.right - cancel->rect.right, 35) << "the margin at 96 dpi";
            EXPECT_EQ(client.bottom - cancel->rect.bottom, 35);
            wchar_t title[64] = {};
            GetWindowTextW(window, title, 64);
            EXPECT_STREQ(title, L"Veldrake");
            EXPECT_EQ(GetWindowLongPtrW(window, GWL_STYLE) & WS_SYSMENU, WS_SYSMENU);
            click(window, id);
        });
        EXPECT_EQ(result, id);
    }
}

TEST(message_dialog, check_box_is_read_by_ok_and_cancel_only) {
    const struct {
        int id;
        bool check_result;
    } cases[] = {{ID_MESSAGE_OK, true}, {ID_MESSAGE_CANCEL, true}, {ID_MESSAGE_NO, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        message_dialog dialog(L"Add this folder to the index?", true);
        dialog.show_check = dialog.show_no = true;
        run_dialog(dialog, [&](HWND window) {
            const child* check = find_id(children_of(window), ID_MESSAGE_CHECK);
            ASSERT_NE(check, nullptr);
            EXPECT_GT(check->rect.right - check->rect.left, 0);
            SendMessageW(GetDlgItem(window, ID_MESSAGE_CHECK), BM_SETCHECK, BST_CHECKED, 0);
            click(window, c.id);
        });
        EXPECT_EQ(dialog.check_result, c.check_result);
    }
    // Hidden by default: made, but with an empty rectangle.
    message_dialog plain(L"text", false);
    run_dialog(plain, [&](HWND window) {
        const child* check = find_id(children_of(window), ID_MESSAGE_CHECK);
        ASSERT_NE(check, nullptr);
        EXPECT_EQ(check->rect.right - check->rect.left, 0);
        EXPECT_EQ(check->text, L"Do this for &all current items");
        click(window, ID_MESSAGE_OK);
    });
}

TEST(message_dialog, ctrl_c_and_the_copy_button_copy_the_text_itself) {
    const std::wstring text = L"First line\nsecond line\rthird";
    message_dialog dialog(text, false);
    dialog.bring_to_front = true;
    run_dialog(dialog, [&](HWND window) {
        ASSERT_TRUE(copy_text_to_clipboard(L"before"));
        ASSERT_TRUE(poll_until([&] { return GetForegroundWindow() == window; })) << "brought to the front";
        INPUT keys[4] = {};
        const WORD codes[4] = {VK_CONTROL, 'C', 'C', VK_CONTROL};
        for (int i = 0; i < 4; ++i) {
            keys[i].type = INPUT_KEYBOARD;
            keys[i].ki.wVk = codes[i];
            keys[i].ki.dwFlags = i >= 2 ? KEYEVENTF_KEYUP : 0;
        }
        ASSERT_EQ(SendInput(4, keys, sizeof(INPUT)), 4u);
        EXPECT_TRUE(poll_until([&] { return clipboard_text() == text; }, std::chrono::seconds(5)))
            << "Ctrl+C; the clipboard has " << testing::PrintToString(clipboard_text().value_or(L"(nothing)"));

        ASSERT_TRUE(copy_text_to_clipboard(L"before"));
        click(window, ID_MESSAGE_COPY);
        EXPECT_TRUE(poll_until([&] { return clipboard_text() == text; }, std::chrono::seconds(5))) << "copy button";
        click(window, ID_MESSAGE_OK);
    });
}

TEST(message_dialog, copying_an_empty_text_leaves_the_clipboard_alone) {
    ASSERT_TRUE(copy_text_to_clipboard(L"kept"));
    EXPECT_FALSE(copy_text_to_clipboard(L""));
    EXPECT_EQ(clipboard_text(), L"kept");
}

TEST(message_dialog, info_message_has_ok_only) {
    std::atomic<int> result{-100};
    std::atomic<DWORD> thread_id{0};
    std::thread runner([&] {
        thread_id = GetCurrentThreadId();
        result = show_info_message(L"The search service was restarted.", nullptr);
    });
    HWND window = nullptr;
    // Visible only once its controls are made.
    poll_until([&] {
        window = FindWindowW(L"#32770", nullptr);
        return window && IsWindowVisible(window) && GetWindowThreadProcessId(window, nullptr) == thread_id;
    });
    ASSERT_NE(window, nullptr);
    const auto children = children_of(window);
    EXPECT_NE(find_id(children, ID_MESSAGE_OK), nullptr);
    EXPECT_EQ(find_id(children, ID_MESSAGE_CANCEL), nullptr);
    EXPECT_EQ(find_id(children, ID_MESSAGE_NO), nullptr);
    EXPECT_EQ(find_id(children, ID_MESSAGE_COPY), nullptr);
    click(window, ID_MESSAGE_OK);
    runner.join();
    EXPECT_EQ(result, ID_MESSAGE_OK);
}

TEST(theme_helpers, accent_keeps_its_three_low_bytes_or_reads_0) {
    const std::wstring key = L"Software\\Microsoft\\Windows\\DWM";
    test_registry::delete_value(HKEY_CURRENT_USER, key, L"AccentColor");
    EXPECT_EQ(read_accent_color(), 0u);
    test_registry::set_dword(HKEY_CURRENT_USER, key, L"AccentColor", 0xFF112233);
    EXPECT_EQ(read_accent_color(), 0x112233u);
    test_registry::set_string(HKEY_CURRENT_USER, key, L"AccentColor", L"0xFF112233");
    EXPECT_EQ(read_accent_color(), 0u) << "not a DWORD";
    test_registry::delete_value(HKEY_CURRENT_USER, key, L"AccentColor");
}
