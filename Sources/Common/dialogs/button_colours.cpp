#include "dialogs/button_colours.h"

#include "dialogs/ui_metrics.h"

namespace button_colours {

colours for_look(const look& l) noexcept {
    uint32_t fill, hover_fill, pushed_fill, border, text;
    if (l.primary) {
        fill = border = l.accent;
        hover_fill = ui_colours::lighten_color(l.accent, 0.2);
        pushed_fill = ui_colours::darken_color(l.accent, 0.9);
        text = 0xFFFFFF;
    } else if (l.dark) {
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
        fill = border = l.dark ? 0x202020 : 0xF2F2F2;
        if (!l.hover && !l.pushed) text = l.dark ? 0xB9B9B9 : 0x525252;
    }
    if (!l.enabled) {
        fill = l.dark ? 0x404040 : 0xE6E6E6;
        text = l.dark ? 0xA0A0A0 : 0x808080;
    } else if (l.pushed) {
        fill = pushed_fill;
    } else if (l.hover) {
        fill = hover_fill;
    }
    return {fill, border, text};
}

}  // namespace button_colours
