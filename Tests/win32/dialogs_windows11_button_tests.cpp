#include "common/test_registry_win32.h"
#include "dialogs/windows11_button_win32.h"
#include "platform/scope_exit.h"
#include "common/pixels_win32.h"

#include <gtest/gtest.h>

using common_dialogs::windows11_button;

namespace {

// The pixel 6 pixels in from the left, at half height, of a 120 x 30 button: the fill, clear of
// border and text.
uint32_t fill_of(HWND button) {
    const test_pixels::canvas picture(120, 30);
    picture.print(button);
    return picture.at(6, 15);
}

}  // namespace

TEST(windows11_button, paints_the_accent_read_at_each_paint_and_the_theme_read_when_attached) {
    const std::wstring personalize = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
    const std::wstring dwm = L"Software\\Microsoft\\Windows\\DWM";
    test_registry::delete_value(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme");
    test_registry::delete_value(HKEY_CURRENT_USER, dwm, L"AccentColor");
    const HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 300, 100, nullptr, nullptr, nullptr, nullptr);
    const scope_exit cleanup([&] {
        DestroyWindow(parent);
        test_registry::delete_value(HKEY_CURRENT_USER, dwm, L"AccentColor");
        test_registry::delete_value(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme");
    });
    const auto make = [&] {
        return CreateWindowExW(0, L"BUTTON", L"OK", WS_CHILD | WS_VISIBLE, 10, 10, 120, 30, parent, nullptr, nullptr, nullptr);
    };
    const HWND primary_window = make(), plain_window = make();
    ASSERT_TRUE(parent && primary_window && plain_window);

    windows11_button primary;
    primary.primary = true;
    primary.attach(primary_window);
    EXPECT_EQ(fill_of(primary_window), 0x000000u) << "no accent: black";
    test_registry::set_dword(HKEY_CURRENT_USER, dwm, L"AccentColor", 0xFFD77800);
    EXPECT_EQ(fill_of(primary_window), 0xD77800u) << "the accent, read again";
    EnableWindow(primary_window, FALSE);
    // Light's disabled fill: without a theme value, light.
    EXPECT_EQ(fill_of(primary_window), 0xE6E6E6u) << "disabled, even when primary";

    // Dark for a DWORD of zero.
    test_registry::set_dword(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme", 0);
    windows11_button plain;
    plain.attach(plain_window);
    EXPECT_EQ(fill_of(plain_window), 0x303030u);
}

TEST(windows11_button, answers_reflected_notifications_and_leaves_the_common_control_messages_to_the_button) {
    const HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 300, 100, nullptr, nullptr,
                                        nullptr, nullptr);
    const scope_exit cleanup([&] { DestroyWindow(parent); });
    const HWND window =
        CreateWindowExW(0, L"BUTTON", L"OK", WS_CHILD | WS_VISIBLE, 10, 10, 120, 30, parent, nullptr, nullptr, nullptr);
    windows11_button button;
    button.attach(window);
    const HDC dc = GetDC(window);
    // OCM_CTLCOLORBTN from a reflecting parent: the default button brush.
    EXPECT_NE(SendMessageW(window, WM_USER + 0x1C00 + WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(dc),
                           reinterpret_cast<LPARAM>(window)), 0);
    ReleaseDC(window, dc);
    // CCM_SETWINDOWTHEME shares its number with a reflected WM_SETREDRAW(FALSE), which would hide the button.
    SendMessageW(window, 0x2000 + 0xB, 0, reinterpret_cast<LPARAM>(L"Explorer"));
    EXPECT_TRUE(IsWindowVisible(window));
}
