#include "common/test_registry_win32.h"
#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "platform/scope_exit.h"
#include "presentation/tray_badge.h"
#include "platform/string_conversion.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

#include <fstream>

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
        EXPECT_NE(tray->window(), nullptr);
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

// In light, a lone left click opens the menu only once the double-click time has passed. In dark, a
// right click comes within that time of a left one: the single-click timer runs out inside the menu's
// loop and must open no second menu, nor take the open one's font and brush away. Both menus are drawn
// by the tray, above the taskbar, and Exit, reached by the arrow keys, ends it.
TEST_F(tray_presentation, a_right_click_after_a_left_one_opens_one_menu_that_keeps_drawing_and_exits) {
    // A long double-click time, so that "not yet" holds however slow the machine is.
    const UINT usual = GetDoubleClickTime();
    constexpr UINT flags = SPIF_UPDATEINIFILE | SPIF_SENDCHANGE;
    ASSERT_TRUE(SystemParametersInfoW(SPI_SETDOUBLECLICKTIME, 3000, nullptr, flags));
    const scope_exit restore([&] { SystemParametersInfoW(SPI_SETDOUBLECLICKTIME, usual, nullptr, flags); });
    const RECT icon = start();
    // An update waits and the index is being read: both dots show.
    PostMessageW(tray->window(), WM_VERSION_CHECK_RESULT, 4, 0);
    HWND menu = nullptr;
    for (const bool dark : {false, true}) {
        SCOPED_TRACE(dark ? "dark, right after left" : "light, left alone");
        set_theme(dark);
        ASSERT_TRUE(desktop::click(centre(icon), 1));
        if (dark) {
            ASSERT_TRUE(desktop::click(centre(icon), 3));
            menu = wait_for_menu();
            EXPECT_FALSE(poll_until([&] { return menus().size() > 1; }, std::chrono::milliseconds(2 * 3000)));
            EXPECT_EQ(menus(), std::vector<HWND>{menu});
        } else {
            EXPECT_TRUE(menus().empty()) << "the menu must wait for a possible second click";
            menu = wait_for_menu();
        }
        ASSERT_NE(menu, nullptr) << "no menu";
        RECT where{}, client{};
        GetWindowRect(menu, &where);
        GetClientRect(menu, &client);
        EXPECT_LT(where.top, centre(icon).y) << "the menu opens above the taskbar";
        EXPECT_EQ((client.bottom - 9) % 6, 0) << "six items of one height and the separator: " << client.bottom;
        const RECT inside{where.left + 6, where.top + 6, where.left + 10, where.top + 10};
        const uint32_t background = dark ? 0x2B2B2B : 0xF9F9F9;
        EXPECT_TRUE(poll_until([&] { return desktop::find_colour(inside, background, 2).has_value(); }))
            << "the owner-drawn background";
        // Pointing at the first item gives it the rounded hover: from the accent in light, grey in dark.
        const POINT first = centre(desktop::menu_item(menu, 1));
        ASSERT_TRUE(desktop::click(first, 0));
        const uint32_t hover = dark ? 0x3E3E3E : 0xD1E6F7;  // lighten_color(0xD77800, 0.82) in light
        EXPECT_TRUE(poll_until([&] {
            return desktop::find_colour({where.left + 12, first.y - 2, where.right - 12, first.y + 2}, hover, 2).has_value();
        })) << "hover colour";
        desktop::keep_picture(dark ? L"tray-menu-dark" : L"tray-menu-light",
                              {where.left - 16, where.top - 16, std::min<LONG>(where.right + 16, 800), 600});
        if (!dark) {
            desktop::click_empty_desktop();
            EXPECT_TRUE(poll_until([&] { return menus().empty(); }));
        }
    }
    // By keyboard from the hovered first item: down past the separator to Exit. The menu's loop reads
    // the keys from its thread's queue.
    for (const WPARAM key : {VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}) PostMessageW(menu, WM_KEYDOWN, key, 0);
    EXPECT_EQ(tray->process().wait_exit(), 0u) << "Exit chosen from the menu by keys";
    EXPECT_TRUE(poll_until([] { return !find_tray_icon(); })) << "and its icon is gone";
}

// One tray, within the minute before its first index sample: the badge follows the state in both themes
// and survives an Explorer restart; a double click starts Settings once and opens no menu; the pages
// open in the browser.
TEST_F(tray_presentation, badge_restart_double_click_and_pages) {
    const recorded_runs settings(L"Veldrake.exe");
    // Wine hands web links to the first program of this list that runs: here a recorder of its arguments.
    const auto folder = fresh_folder(L"browser");
    const auto record = folder / L"record.txt", browser = folder / L"browser.sh";
    std::ofstream(browser, std::ios::binary) << "#!/bin/sh\necho \"$1\" >> '" << desktop::unix_path(record) << "'\n";
    ASSERT_EQ(desktop::run_unix("chmod +x '" + desktop::unix_path(browser) + "'"), 0);
    const std::wstring browsers = L"Software\\Wine\\WineBrowser";
    test_registry::set_string(HKEY_CURRENT_USER, browsers, L"Browsers", to_wide(desktop::unix_path(browser)));
    const scope_exit restore([&] { test_registry::delete_value(HKEY_CURRENT_USER, browsers, L"Browsers"); });
    const RECT icon = start();

    const RECT around{icon.left - 8, icon.top - 8, icon.right + 8, icon.bottom + 8};
    // Up to date, then a major update; the theme is read again at each change. (Which state gives which
    // colour is the core's; the gold badge of a real check: the update tests.)
    const struct { const wchar_t* name; WPARAM update; bool badge; } states[] = {
        {L"plain", 2, false}, {L"red", 8, true}};
    for (const bool dark : {false, true}) {
        set_theme(dark);
        for (const auto& state : states) {
            SCOPED_TRACE(to_utf8(state.name) + (dark ? " dark" : " light"));
            PostMessageW(tray->window(), WM_VERSION_CHECK_RESULT, state.update, 0);
            EXPECT_TRUE(poll_until([&] {
                return badge_shows(icon) == state.badge && !badge_shows(icon, tray_badge::gold & 0xFFFFFF);
            }));
            desktop::keep_picture(std::wstring(L"icon-") + state.name + (dark ? L"-dark" : L"-light"), around);
        }
    }
    ASSERT_TRUE(restart_explorer(tray->window(), TRAY_ICON_MAIN));
    EXPECT_TRUE(poll_until([] { return !find_tray_icon(); })) << "the icon is gone with the old taskbar";
    const RECT back = wait_for_icon();
    EXPECT_TRUE(poll_until([&] { return badge_shows(back); })) << "the icon comes back with its badge";

    ASSERT_TRUE(desktop::click(centre(back), 1, 2));
    EXPECT_FALSE(settings.wait().empty()) << "Settings not started";
    // Well past the double-click time: still no menu, and no second start.
    EXPECT_FALSE(poll_until([&] { return !menus().empty(); }, std::chrono::milliseconds(3 * GetDoubleClickTime())));
    EXPECT_EQ(settings.wait(), std::vector<std::vector<std::wstring>>{{L"--open-tab=settings"}});

    // Which menu item gives which command is the layout's; here the commands reach the browser.
    const struct { uint32_t command; std::string page; } cases[] = {
        {ID_TRAY_FEEDBACK, VELDRAKE_WEB_HOST "/products/veldrake/feedback?ref=client_system_tray"},
        {ID_TRAY_SUPPORT, VELDRAKE_WEB_HOST "/products/veldrake/support"}};
    for (size_t i = 0; i < 2; ++i) {
        SCOPED_TRACE(cases[i].page);
        PostMessageW(tray->window(), WM_COMMAND, cases[i].command, 0);
        std::vector<std::string> lines;
        EXPECT_TRUE(poll_until([&] { return (lines = read_lines(record)).size() > i; })) << "no browser";
        EXPECT_EQ(lines.size() > i ? lines[i] : "", cases[i].page);
    }
}
