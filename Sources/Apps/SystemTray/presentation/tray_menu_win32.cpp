#include "presentation/tray_menu_win32.h"

#include <shellscalingapi.h>

#include "dialogs/theme_helpers_win32.h"
#include "dialogs/ui_metrics.h"
#include "logging/log.h"
#include "platform/unique_resource_win32.h"
#include "presentation/tray_icon_win32.h"
#include "tray_window_win32.h"

#include <optional>

namespace {

using ui_metrics::scale;
namespace layout = tray_menu_layout;

constexpr uint32_t DEFAULT_DPI = 96;

// GetDpiForMonitor lives in shcore.dll, which the tray does not otherwise need.
uint32_t monitor_dpi(POINT point) {
    const HMONITOR monitor = MonitorFromPoint(point, MONITOR_DEFAULTTONEAREST);
    if (!monitor) return DEFAULT_DPI;
    static const auto get_dpi_for_monitor = [] {
        using function = HRESULT(WINAPI*)(HMONITOR, MONITOR_DPI_TYPE, UINT*, UINT*);
        const HMODULE shcore = LoadLibraryExW(L"shcore.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        return shcore ? reinterpret_cast<function>(reinterpret_cast<void*>(GetProcAddress(shcore, "GetDpiForMonitor")))
                      : nullptr;
    }();
    UINT x = 0, y = 0;
    if (!get_dpi_for_monitor || FAILED(get_dpi_for_monitor(monitor, MDT_EFFECTIVE_DPI, &x, &y)) || y == 0) {
        return DEFAULT_DPI;
    }
    return y;
}

// Whether "Segoe UI Variable Text" is installed; asked once per process.
bool variable_text_face_exists() {
    static const bool exists = [] {
        bool found = false;
        const HDC screen = GetDC(nullptr);
        if (!screen) return false;
        LOGFONTW query{};
        query.lfCharSet = DEFAULT_CHARSET;
        wcscpy_s(query.lfFaceName, layout::variable_text_face);
        EnumFontFamiliesExW(
            screen, &query,
            [](const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found_flag) -> int {
                *reinterpret_cast<bool*>(found_flag) = true;
                return 0;
            },
            reinterpret_cast<LPARAM>(&found), 0);
        ReleaseDC(nullptr, screen);
        return found;
    }();
    return exists;
}

// The menu font at `dpi`, or null when it cannot be made.
HFONT create_menu_font(uint32_t dpi) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    if (!SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0, dpi)) return nullptr;
    const layout::font_choice choice = layout::choose_font(read_menu_font_settings(), dpi, variable_text_face_exists());
    LOGFONTW font = metrics.lfMenuFont;
    font.lfHeight = choice.height;
    font.lfWidth = 0;
    font.lfWeight = choice.weight;
    font.lfQuality = CLEARTYPE_QUALITY;
    if (choice.face) wcsncpy_s(font.lfFaceName, choice.face->c_str(), _TRUNCATE);
    return CreateFontIndirectW(&font);
}

// TrackPopupMenu needs the window in the foreground, or the menu does not close when the user clicks
// elsewhere. A process in the background may only take it while attached to the foreground's input.
void make_foreground(HWND window) {
    if (SetForegroundWindow(window)) return;
    const HWND foreground = GetForegroundWindow();
    if (!foreground) return;
    const DWORD own = GetCurrentThreadId();
    const DWORD other = GetWindowThreadProcessId(foreground, nullptr);
    if (other == 0 || other == own) return;
    AttachThreadInput(own, other, TRUE);
    SetForegroundWindow(window);
    AttachThreadInput(own, other, FALSE);
}

SIZE bitmap_size(HBITMAP bitmap) {
    BITMAP info{};
    if (!bitmap || !GetObjectW(bitmap, sizeof(info), &info)) return {0, 0};
    return {info.bmWidth, info.bmHeight < 0 ? -info.bmHeight : info.bmHeight};
}

}  // namespace

void tray_window::show_tray_menu(tray_clicks::point at, bool from_left_click) {
    // Timers and icon messages run inside the menu's modal loop; an inner menu would free the font
    // and brush that the open one draws with.
    if (menu_open) return;
    gdiplus.start();  // for the dots
    const POINT point{at.x, at.y};
    const theme_colours::scheme scheme = common_dialogs::read_scheme();
    const theme_colours::roles colours =
        theme_colours::for_surface(theme_colours::surface::menu, scheme, common_dialogs::read_accent_color());
    unique_hmenu menu(CreatePopupMenu());
    if (!menu) {
        logging::log(log_severity::warning, "Tray menu: CreatePopupMenu failed ({})", GetLastError());
        return;
    }
    std::vector<unique_hgdiobj> dots;
    for (const layout::entry& e : layout::entries()) {
        if (e.command == 0) {
            AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
            continue;
        }
        AppendMenuW(menu.get(), MF_STRING, e.command, e.text);
        const auto colour = layout::dot_colour(e.dot, index.indexing_status, updates.update_status);
        if (!colour) continue;
        // A dot that cannot be made leaves its item without one.
        const HBITMAP dot = render_status_dot(*colour, colours.dot_ring);
        if (!dot) continue;
        dots.emplace_back(dot);
        MENUITEMINFOW info{};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_BITMAP;
        info.hbmpItem = dot;
        SetMenuItemInfoW(menu.get(), e.command, FALSE, &info);
    }

    make_foreground(hwnd());
    release_menu_resources();

    menu_metrics.dpi = monitor_dpi(point);
    menu_font.reset(create_menu_font(menu_metrics.dpi));
    if (!menu_font) {
        // The native menu carries the same items and dots.
        logging::log(log_severity::warning, "Tray menu: could not create the menu font; showing the native menu");
    } else {
        menu_metrics.colours = colours;
        owner_draw_items(menu.get(), menu_items);
        menu_background_brush.reset(CreateSolidBrush(menu_metrics.colours.background));
        MENUINFO background{};
        background.cbSize = sizeof(background);
        background.fMask = MIM_BACKGROUND;
        background.hbrBack = static_cast<HBRUSH>(menu_background_brush.get());
        SetMenuInfo(menu.get(), &background);
    }

    // The lift follows the active window's DPI, which on mixed-DPI setups may differ from the
    // monitor's above; it stays so.
    const UINT active_dpi = GetDpiForWindow(GetActiveWindow());
    const int lift = scale(layout::lift, active_dpi ? active_dpi : DEFAULT_DPI);
    menu_open = true;
    TrackPopupMenu(menu.get(), from_left_click ? 0 : TPM_RIGHTBUTTON, point.x, point.y - lift, 0, hwnd(), nullptr);
    menu_open = false;
    // Lets the menu close properly when the user clicks elsewhere.
    PostMessageW(hwnd(), WM_NULL, 0, 0);

    dots.clear();
    menu.reset();
    release_menu_resources();
}

void tray_window::release_menu_resources() {
    menu_items.clear();
    menu_items.shrink_to_fit();
    menu_font.reset();
    menu_background_brush.reset();
}

tray_menu_item* tray_window::menu_record(ULONG_PTR item_data) noexcept {
    if (menu_items.empty()) return nullptr;
    auto* record = reinterpret_cast<tray_menu_item*>(item_data);
    const tray_menu_item* first = menu_items.data();
    if (record < first || record >= first + menu_items.size()) return nullptr;
    return record;
}

bool tray_window::on_measure_item(MEASUREITEMSTRUCT& item) {
    if (item.CtlType != ODT_MENU) return false;
    const tray_menu_item* record = menu_record(item.itemData);
    if (!record) return false;
    const uint32_t dpi = menu_metrics.dpi;
    layout::item_size size;
    if (record->is_separator) {
        size = layout::measure_separator(dpi);
    } else {
        SIZE text{};
        if (const HDC dc = GetDC(hwnd())) {
            const HGDIOBJ old = SelectObject(dc, menu_font.get());
            GetTextExtentPoint32W(dc, record->text.c_str(), static_cast<int>(record->text.size()), &text);
            SelectObject(dc, old);
            ReleaseDC(hwnd(), dc);
        }
        size = layout::measure_item(dpi, text.cx, text.cy, bitmap_size(record->bitmap).cx);
    }
    item.itemWidth = static_cast<UINT>(size.width);
    item.itemHeight = static_cast<UINT>(size.height);
    return true;
}

bool tray_window::on_draw_item(const DRAWITEMSTRUCT& item) {
    if (item.CtlType != ODT_MENU) return false;
    const tray_menu_item* record = menu_record(item.itemData);
    if (!record) return false;
    paint_menu_item(item.hDC, item.rcItem, item.itemState, *record, menu_metrics, static_cast<HFONT>(menu_font.get()));
    return true;
}

void owner_draw_items(HMENU menu, std::vector<tray_menu_item>& records) {
    const int count = GetMenuItemCount(menu);
    // Reserved first: the menu keeps the records' addresses.
    records.reserve(static_cast<size_t>(count > 0 ? count : 0));
    for (int position = 0; position < count; ++position) {
        MENUITEMINFOW info{};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_FTYPE | MIIM_BITMAP;
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info)) continue;
        tray_menu_item item;
        item.is_separator = (info.fType & MFT_SEPARATOR) != 0;
        item.bitmap = info.hbmpItem;
        if (!item.is_separator) {
            wchar_t text[256] = {};
            GetMenuStringW(menu, static_cast<UINT>(position), text, 256, MF_BYPOSITION);
            item.text = text;
        }
        records.push_back(std::move(item));
        tray_menu_item& record = records.back();
        MENUITEMINFOW owner_drawn{};
        owner_drawn.cbSize = sizeof(owner_drawn);
        owner_drawn.fMask = MIIM_FTYPE | MIIM_DATA | MIIM_BITMAP | (record.is_separator ? 0 : MIIM_STRING);
        owner_drawn.fType = MFT_OWNERDRAW | (record.is_separator ? MFT_SEPARATOR : 0);
        owner_drawn.dwItemData = reinterpret_cast<ULONG_PTR>(&record);
        owner_drawn.hbmpItem = nullptr;
        owner_drawn.dwTypeData = record.text.data();
        SetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &owner_drawn);
    }
}

void paint_menu_item(HDC dc, const RECT& r, UINT state, const tray_menu_item& record,
                     const menu_metrics_record& metrics, HFONT font) {
    const theme_colours::roles& colours = metrics.colours;
    const SIZE bitmap = bitmap_size(record.bitmap);
    const layout::item_geometry g =
        layout::geometry(metrics.dpi, {r.left, r.top, r.right, r.bottom}, bitmap.cx, bitmap.cy);

    const unique_hgdiobj background(CreateSolidBrush(colours.background));
    FillRect(dc, &r, static_cast<HBRUSH>(background.get()));

    if (record.is_separator) {
        const RECT line{g.separator_line.left, g.separator_line.top, g.separator_line.right, g.separator_line.bottom};
        const unique_hgdiobj brush(CreateSolidBrush(colours.border));
        FillRect(dc, &line, static_cast<HBRUSH>(brush.get()));
        return;
    }
    const bool disabled = (state & (ODS_GRAYED | ODS_DISABLED)) != 0;
    const bool hot = (state & ODS_SELECTED) != 0 && !disabled;
    if (hot) {
        const unique_hgdiobj brush(CreateSolidBrush(colours.hot_background));
        const unique_hgdiobj pen(CreatePen(PS_SOLID, 1, colours.hot_background));
        const HGDIOBJ old_brush = SelectObject(dc, brush.get());
        const HGDIOBJ old_pen = SelectObject(dc, pen.get());
        RoundRect(dc, g.hover.left, g.hover.top, g.hover.right, g.hover.bottom, g.corner, g.corner);
        SelectObject(dc, old_pen);
        SelectObject(dc, old_brush);
    }
    if (bitmap.cx > 0 && bitmap.cy > 0) {
        if (const HDC memory = CreateCompatibleDC(dc)) {
            const HGDIOBJ old = SelectObject(memory, record.bitmap);
            const BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
            GdiAlphaBlend(dc, g.bitmap_x, g.bitmap_y, bitmap.cx, bitmap.cy, memory, 0, 0, bitmap.cx, bitmap.cy, blend);
            SelectObject(memory, old);
            DeleteDC(memory);
        }
    }
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, disabled ? colours.disabled_text : hot ? colours.hot_text : colours.text);
    const HGDIOBJ old_font = SelectObject(dc, font);
    RECT text{g.text.left, g.text.top, g.text.right, g.text.bottom};
    DrawTextW(dc, record.text.c_str(), static_cast<int>(record.text.size()), &text,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(dc, old_font);
}
