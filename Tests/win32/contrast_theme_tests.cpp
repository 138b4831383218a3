#include "dialogs/theme_helpers_win32.h"
#include "dialogs/windows11_button_win32.h"
#include "platform/scope_exit.h"
#include "presentation/tray_menu_win32.h"
#include "toasts/notification_window_win32.h"
#include "toasts/toast_utilities_win32.h"
#include "common/pixels_win32.h"

#include <gtest/gtest.h>

using test_pixels::canvas;

// Wine never reports a contrast theme but sets system colours: with contrast as a value, the menu, the
// notification window and a dialog button draw in the user's colours.
TEST(contrast_theme, the_menu_the_notification_and_a_button_draw_in_the_system_colours) {
    const int elements[] = {COLOR_WINDOW, COLOR_WINDOWTEXT, COLOR_MENU, COLOR_MENUTEXT, COLOR_HIGHLIGHT,
                            COLOR_HIGHLIGHTTEXT, COLOR_GRAYTEXT, COLOR_BTNFACE, COLOR_BTNTEXT, COLOR_WINDOWFRAME};
    COLORREF saved[std::size(elements)];
    for (size_t i = 0; i < std::size(elements); ++i) saved[i] = GetSysColor(elements[i]);
    const scope_exit restore([&] { SetSysColors(static_cast<int>(std::size(elements)), elements, saved); });
    // High Contrast Black. White's colours fall into the same groups of equal roles, so it catches no
    // swap of roles that Black misses.
    const COLORREF black[std::size(elements)] = {0x000000, 0xFFFFFF, 0x000000, 0xFFFFFF, 0xFFEB1A,
                                                 0x000000, 0x3FF23F, 0x000000, 0xFFFFFF, 0xFFFFFF};
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    metrics.lfMenuFont.lfHeight = -12;
    const unique_hgdiobj font(CreateFontIndirectW(&metrics.lfMenuFont));
    ASSERT_TRUE(SetSysColors(static_cast<int>(std::size(elements)), elements, black));
    const theme_colours::scheme scheme = common_dialogs::read_scheme(true);
    const auto [window, window_text, menu, menu_text, highlight, highlight_text, gray, face, button_text, frame] = black;

    // The tray's whole menu, owner-drawn.
    unique_hmenu popup(CreatePopupMenu());
    const auto entries = tray_menu_layout::entries();
    for (const auto& e : entries) AppendMenuW(popup.get(), e.command ? MF_STRING : MF_SEPARATOR, e.command, e.text);
    std::vector<tray_menu_item> records;
    owner_draw_items(popup.get(), records);
    // Its first item hot, at rest and disabled: the background and the label.
    const menu_metrics_record record{96, theme_colours::for_surface(theme_colours::surface::menu, scheme, 0)};
    const struct { UINT state; COLORREF background, label; } states[] = {
        {ODS_SELECTED, highlight, highlight_text}, {0, menu, menu_text}, {ODS_GRAYED, menu, gray}};
    for (const auto& [state, background, label] : states) {
        canvas item(260, 26);
        paint_menu_item(item.dc, {0, 0, 260, 26}, state, records[0], record, static_cast<HFONT>(font.get()));
        EXPECT_EQ(item.at(10, 13), background) << state;
        EXPECT_TRUE(item.shows({40, 4, 200, 22}, label)) << state;
    }

    // The notification, as shown.
    const com_ptr<IUserNotification2> notification = toast_utilities::create_local_notification(true);
    const unique_hicon logo(static_cast<HICON>(
        LoadImageW(nullptr, L"Content\\Icons\\veldrake-logo-ai.ico", IMAGE_ICON, 32, 32, LR_LOADFROMFILE)));
    notification->SetIconInfo(logo.get(), L"Veldrake");
    notification->SetBalloonInfo(L"Context menu", L"Click to open its settings", 0);
    // The first poll looks at the window and ends the notification.
    com_ptr<toast_utilities::query_continue_deadline> query;
    *query.put() = new toast_utilities::query_continue_deadline;
    bool looked = false;
    query->should_continue = [&] {
        const HWND toast = FindWindowW(toast_utilities::NOTIFICATION_WINDOW_CLASS, nullptr);
        RECT client{};
        GetClientRect(toast, &client);
        canvas picture(client.right, client.bottom);
        picture.print(toast);
        EXPECT_EQ(picture.at(0, 0), frame);
        EXPECT_EQ(picture.at(1, client.bottom / 2), window) << "no accent bar";
        EXPECT_TRUE(picture.shows({60, 10, client.right - 10, client.bottom - 10}, window_text));
        looked = true;
        return false;
    };
    notification->Show(query.get(), 10, nullptr);
    EXPECT_TRUE(looked);

    // A dialog button at rest and hot.
    const HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 300, 100, nullptr, nullptr, nullptr, nullptr);
    const scope_exit close([&] { DestroyWindow(parent); });
    common_dialogs::windows11_button button;
    button.attach(CreateWindowExW(0, L"BUTTON", L"Cancel", WS_CHILD | WS_VISIBLE, 0, 0, 120, 30, parent, nullptr,
                                  nullptr, nullptr));
    button.scheme = scheme;
    for (const bool hot : {false, true}) {
        button.hover = hot;
        canvas picture(120, 30);
        picture.print(button.window());
        EXPECT_EQ(picture.at(6, 15), hot ? highlight : face) << hot;
        EXPECT_TRUE(picture.shows({20, 5, 100, 25}, hot ? highlight_text : button_text)) << hot;
    }
}
