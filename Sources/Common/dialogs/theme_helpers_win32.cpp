#include "dialogs/theme_helpers_win32.h"

#include <dwmapi.h>
#include <uxtheme.h>

#include "platform/sdk_gaps_win32.h"

namespace common_dialogs {

namespace {

// No published header names this attribute; it darkens a window's scroll bars and frame parts.
constexpr DWORD DWMWA_USE_DARK_CONTROLS = 53;

HFONT make_font(HWND window, DWORD pitch_and_family, const wchar_t* face) noexcept {
    const UINT dpi = window ? GetDpiForWindow(window) : 96;
    return CreateFontW(MulDiv(-14, dpi ? static_cast<int>(dpi) : 96, 96), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                       DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, pitch_and_family,
                       face);
}

}  // namespace

bool high_contrast_on() noexcept {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof(contrast);
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(contrast), &contrast, 0) &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

theme_colours::scheme read_scheme(bool contrast) noexcept {
    if (!contrast) return {is_dark_mode() ? theme_colours::theme::dark : theme_colours::theme::light, {}};
    return {theme_colours::theme::contrast,
            {GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_MENU),
             GetSysColor(COLOR_MENUTEXT), GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHTTEXT),
             GetSysColor(COLOR_GRAYTEXT), GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_BTNTEXT),
             GetSysColor(COLOR_WINDOWFRAME)}};
}

bool focus_cues_hidden(HWND window) noexcept {
    return (SendMessageW(window, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS) != 0;
}

COLORREF read_accent_color() noexcept {
    DWORD value = 0;
    DWORD size = sizeof(value);
    if (RegGetValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\DWM", L"AccentColor", RRF_RT_REG_DWORD, nullptr,
                     &value, &size) != ERROR_SUCCESS) {
        return 0;
    }
    return value & 0x00FFFFFF;
}

void apply_dark_theme(HWND window, bool dark) noexcept {
    const DWORD flag = dark ? 1 : 0;
    DwmSetWindowAttribute(window, DWMWA_USE_DARK_CONTROLS, &flag, sizeof(flag));
    SetWindowTheme(window, dark ? L"DarkMode_Explorer" : L"Explorer", nullptr);
}

void apply_frame_attributes(HWND window, bool dark) noexcept {
    const BOOL flag = dark ? TRUE : FALSE;
    DwmSetWindowAttribute(window, sdk::DWMWA_USE_IMMERSIVE_DARK_MODE, &flag, sizeof(flag));
    const DWORD round = sdk::DWMWCP_ROUND;
    DwmSetWindowAttribute(window, sdk::DWMWA_WINDOW_CORNER_PREFERENCE, &round, sizeof(round));
}

HFONT create_ui_font(HWND window) noexcept { return make_font(window, FF_SWISS, L"Segoe UI"); }

HFONT create_glyph_font(HWND window) noexcept {
    constexpr wchar_t face[] = L"Segoe Fluent Icons";
    HFONT font = make_font(window, VARIABLE_PITCH, face);
    if (!font) return nullptr;
    // The font mapper hands out a substitute for a missing face, whose glyphs would be empty boxes.
    wchar_t chosen[LF_FACESIZE] = {};
    if (const HDC dc = GetDC(nullptr)) {
        const HGDIOBJ old = SelectObject(dc, font);
        GetTextFaceW(dc, LF_FACESIZE, chosen);
        SelectObject(dc, old);
        ReleaseDC(nullptr, dc);
    }
    if (lstrcmpiW(chosen, face) != 0) {
        DeleteObject(font);
        return nullptr;
    }
    return font;
}

}  // namespace common_dialogs
