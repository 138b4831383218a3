#pragma once

#include <windows.h>

#include "presentation/tray_menu_layout.h"

#include <string>

// The owner-drawn menu's record of one item, alive while the menu is up.
struct tray_menu_item {
    std::wstring text;
    HBITMAP bitmap = nullptr;  // not owned
    bool is_separator = false;
};

// The colours and DPI of the owner-drawn menu while it is up.
struct menu_metrics_record {
    uint32_t dpi = 96;
    COLORREF background = 0, text = 0, hover = 0, separator = 0;
};

// The menu font's settings, from the suite's context-menu appearance, with their defaults when the
// settings cannot be read.
tray_menu_layout::font_settings read_menu_font_settings();
