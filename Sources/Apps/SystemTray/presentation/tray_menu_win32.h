#pragma once

#include <windows.h>

#include "dialogs/theme_colours.h"
#include "presentation/tray_menu_layout.h"

#include <string>
#include <vector>

// The owner-drawn menu's record of one item, alive while the menu is up.
struct tray_menu_item {
    std::wstring text;
    HBITMAP bitmap = nullptr;  // not owned
    bool is_separator = false;
};

// The colours and DPI of the owner-drawn menu while it is up.
struct menu_metrics_record {
    uint32_t dpi = 96;
    theme_colours::roles colours;
};

// Turns every item of `menu` owner-drawn, each pointing at its record in `records` (which must not
// grow afterwards). Each item keeps its label as its string, for screen readers.
void owner_draw_items(HMENU menu, std::vector<tray_menu_item>& records);

// Paints one owner-drawn item in the state that WM_DRAWITEM gives (ODS_SELECTED, ODS_GRAYED).
void paint_menu_item(HDC dc, const RECT& r, UINT state, const tray_menu_item& record,
                     const menu_metrics_record& metrics, HFONT font);

// The menu font's settings, from the suite's context-menu appearance, with their defaults when the
// settings cannot be read.
tray_menu_layout::font_settings read_menu_font_settings();
