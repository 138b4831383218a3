#include "dialogs/theme_helpers_win32.h"
#include "dialogs/windows11_button_win32.h"
#include "platform/com_object_win32.h"
#include "platform/scope_exit.h"
#include "presentation/tray_badge.h"
#include "presentation/tray_icon_win32.h"
#include "presentation/tray_menu_win32.h"
#include "toasts/notification_window_win32.h"
#include "common/pixels_win32.h"

#include <gtest/gtest.h>

#include <functional>

using test_pixels::canvas;

namespace {

// Stops the notification at its first poll, after handing its window to `look`.
struct first_poll : com_object<IQueryContinue> {
    std::function<void(HWND)> look;
    HRESULT STDMETHODCALLTYPE QueryContinue() override {
        look(FindWindowW(toast_utilities::NOTIFICATION_WINDOW_CLASS, nullptr));
        return S_FALSE;
    }
};

}  // namespace

// Wine never reports a contrast theme but sets system colours: with contrast as a value, the menu, the
// notification window and a dialog button draw in the user's colours, and the menu items keep their labels.
TEST(contrast_theme, the_menu_the_notification_and_a_button_draw_in_the_system_colours) {
    const int elements[] = {COLOR_WINDOW, COLOR_WINDOWTEXT, COLOR_MENU, COLOR_MENUTEXT, COLOR_HIGHLIGHT,
                            COLOR_HIGHLIGHTTEXT, COLOR_GRAYTEXT, COLOR_BTNFACE, COLOR_BTNTEXT, COLOR_WINDOWFRAME};
    COLORREF saved[std::size(elements)];
    for (size_t i = 0; i < std::size(elements); ++i) saved[i] = GetSysColor(elements[i]);
    const scope_exit restore([&] { SetSysColors(static_cast<int>(std::size(elements)), elements, saved); });
    const struct { const wchar_t* name; COLORREF colours[std::size(elements)]; } schemes[] = {
        {L"black", {0x000000, 0xFFFFFF, 0x000000, 0xFFFFFF, 0xFFEB1A, 0x000000, 0x3FF23F, 0x000000, 0xFFFFFF, 0xFFFFFF}},
        {L"white", {0xFFFFFF, 0x000000, 0xFFFFFF, 0x000000, 0x6E0037, 0xFFFFFF, 0x000060, 0xFFFFFF, 0x000000, 0x000000}},
    };
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    metrics.lfMenuFont.lfHeight = -12;
    const unique_hgdiobj font(CreateFontIndirectW(&metrics.lfMenuFont));
    for (const auto& s : schemes) {
        SCOPED_TRACE(testing::Message() << s.name);
        ASSERT_TRUE(SetSysColors(static_cast<int>(std::size(elements)), elements, s.colours));
        const theme_colours::scheme scheme = common_dialogs::read_scheme(true);
        const auto [window, window_text, menu, menu_text, highlight, highlight_text, gray, face, button_text, frame] = s.colours;

        // The tray's whole menu, its first item hot, then Exit disabled on a line of its own.
        unique_hmenu popup(CreatePopupMenu());
        const auto entries = tray_menu_layout::entries();
        for (const auto& e : entries) AppendMenuW(popup.get(), e.command ? MF_STRING : MF_SEPARATOR, e.command, e.text);
        std::vector<tray_menu_item> records;
        owner_draw_items(popup.get(), records);
        wchar_t text[64] = {};
        for (UINT i = 0; i < entries.size(); ++i, *text = 0) {
            GetMenuStringW(popup.get(), i, text, 64, MF_BYPOSITION);
            EXPECT_STREQ(text, entries[i].text) << "a screen reader reads the label";
        }
        const menu_metrics_record record{96, theme_colours::for_surface(theme_colours::surface::menu, scheme, 0)};
        const unique_hgdiobj gold(render_status_dot(tray_badge::gold, record.colours.dot_ring));
        const unique_hgdiobj green(render_status_dot(tray_badge::green, record.colours.dot_ring));
        records[1].bitmap = static_cast<HBITMAP>(gold.get());
        records[2].bitmap = static_cast<HBITMAP>(green.get());
        canvas menu_picture(260, 6 * 26 + 9), disabled(260, 26);
        int top = 0;
        for (size_t i = 0; i < 8; ++i) {
            const int height = i == 5 ? 9 : 26;
            const HDC dc = i < 7 ? menu_picture.dc : disabled.dc;
            const RECT r{0, top, 260, top + height};
            const UINT state = i == 0 ? ODS_SELECTED : i == 7 ? ODS_GRAYED : 0;
            paint_menu_item(dc, r, state, records[i < 7 ? i : 6], record, static_cast<HFONT>(font.get()));
            const RECT label{40, top + 4, 200, top + height - 4};
            if (i == 0 || i == 4 || i == 7) {
                EXPECT_EQ(GetPixel(dc, 10, top + 13), i == 0 ? highlight : menu) << i;
                EXPECT_TRUE((i < 7 ? menu_picture : disabled).shows(label, i == 0 ? highlight_text : i == 7 ? gray : menu_text)) << i;
            }
            top = i < 6 ? top + height : 0;
        }
        const bool black = s.name == std::wstring(L"black");
        if (black) menu_picture.keep(L"tray-menu-contrast");

        // The notification, as shown.
        const com_ptr<IUserNotification2> notification = toast_utilities::create_local_notification(true);
        const unique_hicon logo(static_cast<HICON>(
            LoadImageW(nullptr, L"Content\\Icons\\veldrake-logo-ai.ico", IMAGE_ICON, 32, 32, LR_LOADFROMFILE)));
        notification->SetIconInfo(logo.get(), L"Veldrake");
        notification->SetBalloonInfo(L"Context menu", L"Click to open its settings", 0);
        com_ptr<first_poll> query;
        *query.put() = new first_poll;
        bool looked = false;
        query->look = [&](HWND toast) {
            RECT client{};
            GetClientRect(toast, &client);
            canvas picture(client.right, client.bottom);
            picture.print(toast);
            EXPECT_EQ(picture.at(0, 0), frame);
            EXPECT_EQ(picture.at(1, client.bottom / 2), window) << "no accent bar";
            EXPECT_TRUE(picture.shows({60, 10, client.right - 10, client.bottom - 10}, window_text));
            if (black) picture.keep(L"toast-contrast");
            looked = true;
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
}
