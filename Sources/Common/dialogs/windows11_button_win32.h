#pragma once

#include <windows.h>

#include "dialogs/theme_colours.h"
#include "platform/unique_resource_win32.h"

#include <string>

namespace common_dialogs {

// The suite's owner-painted push button in the Windows 11 manner: rounded, accent-filled when primary,
// following the theme. It takes over an existing "BUTTON" child window; the button keeps its own
// keyboard and click behaviour, only the painting is ours.
class windows11_button {
public:
    windows11_button() = default;
    windows11_button(const windows11_button&) = delete;
    windows11_button& operator=(const windows11_button&) = delete;
    ~windows11_button();

    // Subclasses `window` (once), reads the theme and the DPI, makes the font.
    void attach(HWND window);
    HWND window() const noexcept { return window_; }

    bool primary = false;  // painted in the accent colour
    bool flat = false;     // blends with the background
    bool hover = false;
    HFONT font = nullptr;  // the font in use: ours, or the one WM_SETFONT gave
    HFONT glyph_font = nullptr;
    std::wstring glyph;  // shown in place of the window text when set
    theme_colours::scheme scheme;  // read when attached
    uint32_t dpi = 96;

private:
    static LRESULT CALLBACK subclass_proc(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR) noexcept;
    LRESULT process_message(UINT message, WPARAM w, LPARAM l);
    void paint(HDC dc);
    void detach() noexcept;

    HWND window_ = nullptr;
    unique_hgdiobj own_font_;
    unique_hgdiobj own_glyph_font_;
    bool glyph_font_tried_ = false;
};

}  // namespace common_dialogs
