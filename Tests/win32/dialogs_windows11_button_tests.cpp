#include "common/test_registry_win32.h"
#include "dialogs/windows11_button_win32.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

using common_dialogs::windows11_button;

namespace {

// A button on a hidden top-level window, painted into a memory bitmap on request.
class painted_button : public testing::Test {
protected:
    void SetUp() override {
        test_registry::delete_value(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme");
        test_registry::delete_value(HKEY_CURRENT_USER, dwm, L"AccentColor");
        parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 300, 100, nullptr, nullptr, nullptr, nullptr);
        ASSERT_NE(parent, nullptr);
        window = CreateWindowExW(0, L"BUTTON", L"OK", WS_CHILD | WS_VISIBLE | BS_DEFPUSHBUTTON, 10, 10, 120, 30, parent,
                                 reinterpret_cast<HMENU>(IDOK), nullptr, nullptr);
        ASSERT_NE(window, nullptr);
    }
    void TearDown() override {
        DestroyWindow(parent);
        test_registry::delete_value(HKEY_CURRENT_USER, dwm, L"AccentColor");
    }

    // The pixel 6 pixels in from the left, at half height: the fill, clear of border and text.
    uint32_t fill() {
        const HDC screen = GetDC(nullptr);
        const HDC memory = CreateCompatibleDC(screen);
        const unique_hgdiobj bitmap(CreateCompatibleBitmap(screen, 120, 30));
        const HGDIOBJ old = SelectObject(memory, bitmap.get());
        SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(memory), PRF_CLIENT);
        const COLORREF c = GetPixel(memory, 6, 15);
        SelectObject(memory, old);
        DeleteDC(memory);
        ReleaseDC(nullptr, screen);
        return c;
    }

    const std::wstring personalize = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
    const std::wstring dwm = L"Software\\Microsoft\\Windows\\DWM";
    HWND parent = nullptr, window = nullptr;
};

}  // namespace

TEST_F(painted_button, primary_follows_the_accent_read_at_each_paint) {
    windows11_button button;
    button.primary = true;
    button.attach(window);
    EXPECT_EQ(fill(), 0x000000u) << "no accent: black";
    button.hover = true;
    EXPECT_EQ(fill(), 0x333333u);
    button.hover = false;
    test_registry::set_dword(HKEY_CURRENT_USER, dwm, L"AccentColor", 0xFFD77800);
    EXPECT_EQ(fill(), 0xD77800u) << "the accent, read again";
    EnableWindow(window, FALSE);
    EXPECT_EQ(fill(), 0xE6E6E6u) << "disabled, even when primary";
}

TEST_F(painted_button, plain_button_in_light_and_dark) {
    {
        windows11_button light;
        light.attach(window);
        EXPECT_EQ(fill(), 0xFAFAFAu);
    }
    // The theme is read when the button is attached.
    test_registry::set_dword(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme", 0);
    windows11_button dark;
    dark.attach(window);
    EXPECT_TRUE(dark.dark);
    EXPECT_EQ(fill(), 0x303030u);
    test_registry::delete_value(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme");
}
