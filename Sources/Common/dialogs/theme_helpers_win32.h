#pragma once

#include <windows.h>

#include "platform/theme_win32.h"

// How the suite's windows follow the user's theme. `is_dark_mode` comes from the platform toolkit.
namespace common_dialogs {

// The accent colour as 0x00BBGGRR, or 0 when it cannot be read.
COLORREF read_accent_color() noexcept;

// Dark or light scroll bars and frames for one window.
void apply_dark_theme(HWND window, bool dark) noexcept;

// Every top-level window of the dialogs: a dark caption when dark, and round corners.
void apply_frame_attributes(HWND window, bool dark) noexcept;

// The dialogs' font: Segoe UI at 14 pixels at 96 dpi, scaled to the window's DPI. Owned by the caller.
HFONT create_ui_font(HWND window) noexcept;

// The icon font that draws a button's glyph, or null when it is not installed.
HFONT create_glyph_font(HWND window) noexcept;

}  // namespace common_dialogs
