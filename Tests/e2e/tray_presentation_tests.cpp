#include "common/test_registry_win32.h"
#include "doubles/sibling_doubles_win32.h"
#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "platform/scope_exit.h"
#include "platform/string_conversion.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

using namespace e2e;
using test_support::poll_until;

namespace {

constexpr uint32_t LOGO_TEAL = 0x0E5A6B;  // the logo's tile
constexpr uint32_t BADGE_RED = 0xFF0000;
const std::wstring personalize = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";

void set_dark(bool dark) {
    test_registry::set_dword(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme", dark ? 0 : 1);
}

// The tray's icon on the taskbar: where the logo's teal shows in the notification area.
std::optional<RECT> find_tray_icon() {
    return desktop::find_colour(desktop::capture(desktop::notification_area()), LOGO_TEAL, 16);
}

POINT centre(const RECT& r) { return {(r.left + r.right) / 2, (r.top + r.bottom) / 2}; }

// Whether a red badge shows in the lower left quarter of the icon.
bool badge_shows(const RECT& icon) {
    const RECT lower_left{icon.left - 1, (icon.top + icon.bottom) / 2, (icon.left + icon.right) / 2, icon.bottom + 1};
    return desktop::find_colour(desktop::capture(lower_left), BADGE_RED, 40).has_value();
}

class tray_presentation : public testing::Test {
protected:
    void SetUp() override {
        reset_tray_state();
        set_dark(false);
    }
    void TearDown() override {
        desktop::click_empty_desktop();
        test_registry::delete_value(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme");
        test_registry::delete_value(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\DWM", L"AccentColor");
        reset_tray_state();
    }

    // Starts the tray and waits for its icon on the taskbar.
    RECT start(running_tray& tray) {
        EXPECT_NE(tray.window(), nullptr);
        std::optional<RECT> icon;
        EXPECT_TRUE(poll_until([&] { return (icon = find_tray_icon()).has_value(); })) << "no icon on the taskbar";
        return icon.value_or(RECT{});
    }

    // Opens the menu with a right click on the icon and gives its window.
    HWND open_menu(const running_tray& tray, const RECT& icon) {
        EXPECT_TRUE(desktop::click(centre(icon), 3));
        HWND menu = nullptr;
        poll_until([&] { return (menu = desktop::find_popup_menu(tray.process().id())) != nullptr; });
        return menu;
    }

    void close_menu(const running_tray& tray) {
        desktop::click_empty_desktop();
        EXPECT_TRUE(poll_until([&] { return desktop::find_popup_menu(tray.process().id()) == nullptr; }));
    }
};

}  // namespace

TEST_F(tray_presentation, right_click_opens_six_items_and_a_separator_and_exit_ends_the_tray) {
    running_tray tray;
    const RECT icon = start(tray);
    const HWND menu = open_menu(tray, icon);
    ASSERT_NE(menu, nullptr) << "no menu after a right click";
    RECT where{};
    GetWindowRect(menu, &where);
    EXPECT_LT(where.top, centre(icon).y) << "the menu opens above the taskbar";

    // Menus of another process cannot be read, but their measure can: six items of one height and
    // the separator's 9 pixels at 96 dpi.
    RECT client{};
    GetClientRect(menu, &client);
    const int items_height = client.bottom - 9;
    EXPECT_EQ(items_height % 6, 0) << "client height " << client.bottom;
    const int item_height = items_height / 6;
    EXPECT_GE(item_height, 16 + 10) << "the dot column and the padding";

    // The last item is Exit, which ends the tray while the suite's shutdown is not there.
    POINT exit_item{(client.left + client.right) / 2, client.bottom - item_height / 2};
    MapWindowPoints(menu, nullptr, &exit_item, 1);
    ASSERT_TRUE(desktop::click(exit_item, 1));
    EXPECT_EQ(tray.process().wait_exit(), 0u) << "Exit chosen from the menu";
    EXPECT_TRUE(poll_until([] { return !find_tray_icon(); })) << "and its icon is gone";
}

TEST_F(tray_presentation, single_left_click_opens_the_menu_only_after_the_double_click_time) {
    // A long double-click time for this tray, so that "not yet" holds however slow the machine is.
    const UINT usual = GetDoubleClickTime();
    constexpr UINT long_time = 3000;
    ASSERT_TRUE(SystemParametersInfoW(SPI_SETDOUBLECLICKTIME, long_time, nullptr, SPIF_UPDATEINIFILE | SPIF_SENDCHANGE));
    const scope_exit restore([&] {
        SystemParametersInfoW(SPI_SETDOUBLECLICKTIME, usual, nullptr, SPIF_UPDATEINIFILE | SPIF_SENDCHANGE);
    });
    running_tray tray;
    const RECT icon = start(tray);
    const auto clicked = std::chrono::steady_clock::now();
    ASSERT_TRUE(desktop::click(centre(icon), 1));
    const bool early = desktop::find_popup_menu(tray.process().id()) != nullptr;
    const bool opened = poll_until([&] { return desktop::find_popup_menu(tray.process().id()) != nullptr; });
    const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - clicked);
    std::printf("[ measured ] left click to menu: %lld ms (double-click time %u ms)\n",
                static_cast<long long>(waited.count()), long_time);
    EXPECT_FALSE(early) << "the menu must wait for a possible second click";
    EXPECT_TRUE(opened) << "a single left click opens the menu";
    close_menu(tray);
    EXPECT_EQ(tray.close(), 0u);
}

TEST_F(tray_presentation, double_click_starts_settings_once_and_opens_no_menu) {
    // Veldrake.exe beside the tray is the sibling double, which records each start.
    const std::filesystem::path settings_app = tray_exe().parent_path() / L"Veldrake.exe";
    const std::filesystem::path record = desktop::artifacts_folder() / L"settings-record.txt";
    std::error_code ignored;
    std::filesystem::remove(record, ignored);
    sibling_doubles::control(settings_app, record);

    running_tray tray;
    const RECT icon = start(tray);
    ASSERT_TRUE(desktop::double_click(centre(icon)));
    EXPECT_TRUE(poll_until([&] { return !sibling_doubles::read_records(record).empty(); })) << "Settings not started";
    // Well past the double-click time: still no menu, and no second start.
    const bool menu_seen = poll_until([&] { return desktop::find_popup_menu(tray.process().id()) != nullptr; },
                                      std::chrono::milliseconds(3 * GetDoubleClickTime()));
    EXPECT_FALSE(menu_seen);
    const auto runs = sibling_doubles::read_records(record);
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].program, L"Veldrake.exe");
    EXPECT_NE(runs[0].command_line.find(L"--open-tab=settings"), std::wstring::npos) << runs[0].command_line;
    sibling_doubles::remove_control(settings_app);
    EXPECT_EQ(tray.close(), 0u);
}

TEST_F(tray_presentation, badge_follows_the_state_and_survives_an_explorer_restart) {
    running_tray tray;
    RECT icon = start(tray);
    EXPECT_FALSE(badge_shows(icon)) << "index complete and up to date: the plain logo";
    std::filesystem::path folder = desktop::artifacts_folder();
    desktop::screenshot(folder / L"icon-plain-full.png");
    desktop::crop(folder / L"icon-plain-full.png", folder / L"icon-plain.png",
                  {icon.left - 8, icon.top - 8, icon.right + 8, icon.bottom + 8});

    // A major update is out: a red badge.
    PostMessageW(tray.window(), WM_VERSION_CHECK_RESULT, 8, 0);
    EXPECT_TRUE(poll_until([&] { return badge_shows(icon); })) << "red badge after a major update";
    desktop::screenshot(folder / L"icon-badge-full.png");
    desktop::crop(folder / L"icon-badge-full.png", folder / L"icon-badge.png",
                  {icon.left - 8, icon.top - 8, icon.right + 8, icon.bottom + 8});

    // Explorer restarts: its icons are gone, then "TaskbarCreated" goes to every top-level window.
    NOTIFYICONDATAW gone{};
    gone.cbSize = sizeof(gone);
    gone.hWnd = tray.window();
    gone.uID = TRAY_ICON_MAIN;
    ASSERT_TRUE(Shell_NotifyIconW(NIM_DELETE, &gone));
    EXPECT_TRUE(poll_until([] { return !find_tray_icon(); })) << "the icon is gone with the old taskbar";
    // As the new Explorer does it: to every top-level window, without waiting for any.
    SendNotifyMessageW(HWND_BROADCAST, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
    std::optional<RECT> back;
    ASSERT_TRUE(poll_until([&] { return (back = find_tray_icon()).has_value(); })) << "the icon comes back";
    EXPECT_TRUE(poll_until([&] { return badge_shows(*back); })) << "with its badge";
    EXPECT_EQ(tray.close(), 0u);
}

TEST_F(tray_presentation, menu_in_light_and_dark_is_kept_as_pictures) {
    running_tray tray;
    const RECT icon = start(tray);
    // An update waits and the index is being read: both dots show.
    PostMessageW(tray.window(), WM_VERSION_CHECK_RESULT, 4, 0);
    test_registry::set_dword(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\DWM", L"AccentColor", 0xFFD77800);
    const std::filesystem::path folder = desktop::artifacts_folder();
    for (const bool dark : {false, true}) {
        SCOPED_TRACE(dark ? "dark" : "light");
        set_dark(dark);
        const HWND menu = open_menu(tray, icon);
        ASSERT_NE(menu, nullptr);
        RECT where{};
        GetWindowRect(menu, &where);
        // The owner-drawn background: 0xF9F9F9 in light, 0x2B2B2B in dark.
        const RECT inside{where.left + 6, where.top + 6, where.left + 10, where.top + 10};
        const uint32_t background = dark ? 0x2B2B2B : 0xF9F9F9;
        EXPECT_TRUE(poll_until([&] { return desktop::find_colour(desktop::capture(inside), background, 2).has_value(); }))
            << "menu background";
        // The pointer on the first item: its rounded hover, from the accent in light, grey in dark.
        RECT client{};
        GetClientRect(menu, &client);
        POINT first_item{(client.left + client.right) / 2, (client.bottom - 9) / 6 / 2};
        MapWindowPoints(menu, nullptr, &first_item, 1);
        ASSERT_EQ(desktop::run_unix("xdotool mousemove " + std::to_string(first_item.x) + " " + std::to_string(first_item.y)), 0);
        const RECT first_row{where.left + 12, first_item.y - 2, where.right - 12, first_item.y + 2};
        const uint32_t hover = dark ? 0x3E3E3E : 0xD1E6F7;  // lighten_color(0xD77800, 0.82) in light
        EXPECT_TRUE(poll_until([&] { return desktop::find_colour(desktop::capture(first_row), hover, 2).has_value(); }))
            << "hover colour";
        const std::wstring name = dark ? L"tray-menu-dark" : L"tray-menu-light";
        ASSERT_TRUE(desktop::screenshot(folder / (name + L"-full.png")));
        EXPECT_TRUE(desktop::crop(folder / (name + L"-full.png"), folder / (name + L".png"),
                                  {where.left - 16, where.top - 16, std::min<LONG>(where.right + 16, 800), 600}));
        close_menu(tray);
    }
    EXPECT_EQ(tray.close(), 0u);
}

TEST_F(tray_presentation, feedback_and_support_open_their_pages_in_the_browser) {
    // Wine hands web links to the first program of this list that runs: here a recorder of its arguments.
    const std::filesystem::path folder = desktop::artifacts_folder();
    const std::filesystem::path record = folder / L"browser-record.txt";
    const std::filesystem::path browser = folder / L"browser.sh";
    std::error_code ignored;
    std::filesystem::remove(record, ignored);
    {
        std::ofstream script(browser, std::ios::binary | std::ios::trunc);
        script << "#!/bin/sh\necho \"$1\" >> '" << desktop::unix_path(record) << "'\n";
    }
    ASSERT_EQ(desktop::run_unix("chmod +x '" + desktop::unix_path(browser) + "'"), 0);
    const std::wstring browsers_key = L"Software\\Wine\\WineBrowser";
    test_registry::set_string(HKEY_CURRENT_USER, browsers_key, L"Browsers", to_wide(desktop::unix_path(browser)));

    running_tray tray;
    const RECT icon = start(tray);
    const struct {
        int position;  // from the top, counting the items before the separator
        std::string page;
    } cases[] = {
        {4, VELDRAKE_WEB_HOST "/products/veldrake/feedback?ref=client_system_tray"},
        {5, VELDRAKE_WEB_HOST "/products/veldrake/support"},
    };
    size_t expected_lines = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.page);
        const HWND menu = open_menu(tray, icon);
        ASSERT_NE(menu, nullptr);
        RECT client{};
        GetClientRect(menu, &client);
        const int item_height = (client.bottom - 9) / 6;
        POINT item{(client.left + client.right) / 2, item_height * (c.position - 1) + item_height / 2};
        MapWindowPoints(menu, nullptr, &item, 1);
        ASSERT_TRUE(desktop::click(item, 1));
        ++expected_lines;
        EXPECT_TRUE(poll_until([&] { return read_lines(record).size() >= expected_lines; })) << "the browser was not started";
        const auto lines = read_lines(record);
        if (lines.size() >= expected_lines) EXPECT_EQ(lines[expected_lines - 1], c.page);
    }
    test_registry::delete_value(HKEY_CURRENT_USER, browsers_key, L"Browsers");
    EXPECT_EQ(tray.close(), 0u);
}
