#include "dialogs/theme_colours.h"

#include "dialogs/ui_metrics.h"

namespace theme_colours {

namespace {

constexpr uint32_t opaque(uint32_t colorref) noexcept {
    return 0xFF000000 | (colorref & 0xFF) << 16 | (colorref & 0xFF00) | (colorref >> 16 & 0xFF);
}

roles contrast_roles(surface s, const system_colours& c) noexcept {
    const bool menu = s == surface::menu;
    const uint32_t background = menu ? c.menu : c.window;
    const uint32_t text = menu ? c.menu_text : c.window_text;
    return {background, text, text, c.highlight, c.highlight_text, c.gray_text, c.window_frame, std::nullopt,
            opaque(text)};
}

roles menu_roles(bool dark, uint32_t accent) noexcept {
    if (dark) return {0x2B2B2B, 0xFFFFFF, 0xFFFFFF, 0x3E3E3E, 0xFFFFFF, 0xA0A0A0, 0x484848, std::nullopt, 0xFF000000};
    const uint32_t hover = accent != 0 ? ui_colours::lighten_color(accent, 0.82) : 0xFCF0E6;
    return {0xF9F9F9, 0x000000, 0x000000, hover, 0x000000, 0x808080, 0xDEDEDE, std::nullopt, 0xFFD3D3D3};
}

}  // namespace

roles for_surface(surface s, const scheme& sch, uint32_t accent) noexcept {
    if (sch.kind == theme::contrast) return contrast_roles(s, sch.system);
    const bool dark = sch.kind == theme::dark;
    if (s == surface::menu) return menu_roles(dark, accent);
    const uint32_t text = dark ? 0xFFFFFF : 0x000000;
    const uint32_t disabled = dark ? 0xA0A0A0 : 0x808080;
    if (s == surface::dialog) {
        const uint32_t background = dark ? 0x202020 : 0xF2F2F2;
        return {background, text, text, background, text, disabled, background, std::nullopt, 0};
    }
    const uint32_t background = dark ? 0x2B2B2B : 0xF9F9F9;
    return {background, text, dark ? 0xD0D0D0u : 0x404040u, background, text, disabled,
            dark ? 0x464646u : 0xDADADAu, accent != 0 ? accent : 0xD77800, 0};
}

button_paint for_button(const button_look& l, const scheme& sch, uint32_t accent) noexcept {
    if (sch.kind == theme::contrast) {
        const system_colours& c = sch.system;
        button_paint p{c.button_face, l.primary ? c.highlight : c.window_frame, c.button_text, c.button_text};
        if (!l.enabled) {
            p.text = c.gray_text;
        } else if (l.hover || l.pushed) {
            p.fill = c.highlight;
            p.text = p.focus = c.highlight_text;
        }
        return p;
    }
    const bool dark = sch.kind == theme::dark;
    uint32_t fill, hover_fill, pushed_fill, border, text;
    if (l.primary) {
        fill = border = accent;
        hover_fill = ui_colours::lighten_color(accent, 0.2);
        pushed_fill = ui_colours::darken_color(accent, 0.9);
        text = 0xFFFFFF;
    } else if (dark) {
        fill = border = 0x303030;
        hover_fill = 0x444444;
        pushed_fill = 0x282828;
        text = 0xFFFFFF;
    } else {
        fill = 0xFAFAFA;
        hover_fill = 0xDCDCDC;
        pushed_fill = 0xC8C8C8;
        border = 0xA0A0A0;
        text = 0x000000;
    }
    if (l.flat && !l.primary) {
        fill = border = dark ? 0x202020 : 0xF2F2F2;
        if (!l.hover && !l.pushed) text = dark ? 0xB9B9B9 : 0x525252;
    }
    if (!l.enabled) {
        fill = dark ? 0x404040 : 0xE6E6E6;
        text = dark ? 0xA0A0A0 : 0x808080;
    } else if (l.pushed) {
        fill = pushed_fill;
    } else if (l.hover) {
        fill = hover_fill;
    }
    return {fill, border, text, 0xFFFFFF};
}

bool looks_dark(const scheme& sch) noexcept {
    if (sch.kind != theme::contrast) return sch.kind == theme::dark;
    const uint32_t w = sch.system.window;
    // Rec. 601 luma, in integers.
    return (299 * (w & 0xFF) + 587 * (w >> 8 & 0xFF) + 114 * (w >> 16 & 0xFF)) < 128000;
}

}  // namespace theme_colours
