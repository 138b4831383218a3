#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "platform/scope_exit.h"
#include "presentation/tray_badge.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

using namespace e2e;

namespace {

using desktop::centre;
using desktop::find_tray_icon;

// Whether a badge of `rgb` shows in the lower left quarter of the icon.
bool badge_shows(const RECT& icon, uint32_t rgb = tray_badge::red & 0xFFFFFF) {
    return desktop::find_colour({icon.left - 1, centre(icon).y, centre(icon).x, icon.bottom + 1}, rgb, 40).has_value();
}

class tray_presentation : public tray_test {
protected:
    // Starts the tray and waits for its icon on the taskbar.
    RECT start() {
        tray.emplace();
        return wait_for_icon();
    }
    static RECT wait_for_icon() {
        std::optional<RECT> icon;
        EXPECT_TRUE(poll_until([&] { return (icon = find_tray_icon()).has_value(); })) << "no icon on the taskbar";
        return icon.value_or(RECT{});
    }

    // The tray's visible popup menus.
    std::vector<HWND> menus() const { return windows_of(tray->process().id(), L"#32768"); }
    // The first of them once one shows, or null.
    HWND wait_for_menu() const { return wait_for_window(tray->process().id(), L"#32768"); }

    std::optional<running_tray> tray;
};

}  // namespace

// A lone left click opens the menu only once the double-click time has passed. A right click that comes
// within that time of a left one opens it at once: the single-click timer runs out inside the menu's
// loop and must open no second menu. Both menus open above the taskbar, and Exit, reached by the arrow
// keys, ends the tray. (How the menu draws in each theme is the core's and the Win32 tier's.)
TEST_F(tray_presentation, a_right_click_after_a_left_one_opens_one_menu_and_exits) {
    // A long double-click time, so that "not yet" holds however slow the machine is.
    const UINT usual = GetDoubleClickTime();
    constexpr UINT flags = SPIF_UPDATEINIFILE | SPIF_SENDCHANGE;
    ASSERT_TRUE(SystemParametersInfoW(SPI_SETDOUBLECLICKTIME, 3000, nullptr, flags));
    const scope_exit restore([&] { SystemParametersInfoW(SPI_SETDOUBLECLICKTIME, usual, nullptr, flags); });
    const RECT icon = start();
    HWND menu = nullptr;
    for (const bool right_after_left : {false, true}) {
        SCOPED_TRACE(right_after_left ? "right after left" : "left alone");
        ASSERT_TRUE(desktop::click(centre(icon), 1));
        if (right_after_left) {
            ASSERT_TRUE(desktop::click(centre(icon), 3));
            menu = wait_for_menu();
            EXPECT_FALSE(poll_until([&] { return menus().size() > 1; }, std::chrono::milliseconds(2 * 3000)));
            EXPECT_EQ(menus(), std::vector<HWND>{menu});
        } else {
            EXPECT_TRUE(menus().empty()) << "the menu must wait for a possible second click";
            menu = wait_for_menu();
        }
        ASSERT_NE(menu, nullptr) << "no menu";
        RECT where{};
        GetWindowRect(menu, &where);
        EXPECT_LT(where.top, centre(icon).y) << "the menu opens above the taskbar";
        if (!right_after_left) {
            desktop::click_empty_desktop();
            EXPECT_TRUE(poll_until([&] { return menus().empty(); }));
        }
    }
    // By keyboard from the first item, which the pointer selects: down past the separator to Exit. The
    // menu's loop reads the keys from its thread's queue.
    const POINT first = centre(desktop::menu_item(menu, 1));
    ASSERT_TRUE(desktop::click(first, 0));
    for (const WPARAM key : {VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}) PostMessageW(menu, WM_KEYDOWN, key, 0);
    EXPECT_EQ(tray->process().wait_exit(), 0u) << "Exit chosen from the menu by keys";
    EXPECT_TRUE(poll_until([] { return !find_tray_icon(); })) << "and its icon is gone";
}

// One tray, within the minute before its first index sample: the badge shows a waiting major update
// and survives an Explorer restart; a double click starts Settings once and opens no menu. (Which state
// gives which colour, and its outline in each theme, are the core's and the Win32 tier's.)
TEST_F(tray_presentation, badge_restart_and_double_click) {
    const recorded_runs settings(L"Veldrake.exe");
    const RECT icon = start();
    PostMessageW(tray->window(), WM_VERSION_CHECK_RESULT, 8, 0);
    EXPECT_TRUE(poll_until([&] { return badge_shows(icon); })) << "the red badge of a major update";
    // The restart's own delete took the icon away; the tray may add it back before any poll could see it gone.
    ASSERT_TRUE(restart_explorer(tray->window(), TRAY_ICON_MAIN));
    const RECT back = wait_for_icon();
    EXPECT_TRUE(poll_until([&] { return badge_shows(back); })) << "the icon comes back with its badge";

    ASSERT_TRUE(desktop::click(centre(back), 1, 2));
    EXPECT_FALSE(settings.wait().empty()) << "Settings not started";
    // Well past the double-click time: still no menu, and no second start.
    EXPECT_FALSE(poll_until([&] { return !menus().empty(); }, std::chrono::milliseconds(3 * GetDoubleClickTime())));
    EXPECT_EQ(settings.wait(), std::vector<std::vector<std::wstring>>{{L"--open-tab=settings"}});
}
