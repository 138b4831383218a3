#pragma once

#include <windows.h>

#include "dialogs/theme_colours.h"
#include "platform/theme_win32.h"

// How the suite's windows follow the user's theme. `is_dark_mode` comes from the platform toolkit.
namespace common_dialogs {

// Whether the user has turned a contrast theme on. Wine always says no.
bool high_contrast_on() noexcept;

// The theme that the suite's surfaces are drawn for. `contrast` is asked of the caller, so that the
// contrast road runs where the platform never takes it: then the colours are the user's system colours.
theme_colours::scheme read_scheme(bool contrast) noexcept;
inline theme_colours::scheme read_scheme() noexcept { return read_scheme(high_contrast_on()); }

// Whether the frame and scroll bars of a window get their dark look: in the dark theme only.
inline bool dark_frame(const theme_colours::scheme& scheme) noexcept {
    return scheme.kind == theme_colours::theme::dark;
}

// Whether keyboard cues (focus rectangles) are hidden in `window`, as the user last worked it.
bool focus_cues_hidden(HWND window) noexcept;

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
