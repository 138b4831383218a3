#include "dialogs/theme_colours.h"

#include <gtest/gtest.h>

using namespace theme_colours;

namespace {

// Windows' own High Contrast Black and High Contrast White, as GetSysColor gives them.
const system_colours hc_black{.window = 0x000000, .window_text = 0xFFFFFF, .menu = 0x000000, .menu_text = 0xFFFFFF,
                              .highlight = 0xFFEB1A, .highlight_text = 0x000000, .gray_text = 0x3FF23F,
                              .button_face = 0x000000, .button_text = 0xFFFFFF, .window_frame = 0xFFFFFF};
const system_colours hc_white{.window = 0xFFFFFF, .window_text = 0x000000, .menu = 0xFFFFFF, .menu_text = 0x000000,
                              .highlight = 0x6E0037, .highlight_text = 0xFFFFFF, .gray_text = 0x000060,
                              .button_face = 0xFFFFFF, .button_text = 0x000000, .window_frame = 0x000000};
// A user's own scheme, where the menu and the windows differ.
const system_colours own{.window = 1, .window_text = 2, .menu = 3, .menu_text = 4, .highlight = 5, .highlight_text = 6,
                         .gray_text = 7, .button_face = 8, .button_text = 9, .window_frame = 10};
const scheme light{}, dark{theme::dark, {}}, black{theme::contrast, hc_black}, white{theme::contrast, hc_white};

}  // namespace

// Light and dark stay the colours the README's pictures show; contrast takes the user's own, with no accent.
TEST(theme_colours, each_surface_in_each_theme) {
    const struct { const char* name; surface s; scheme sch; uint32_t accent; roles expected; } cases[] = {
        {"menu light", surface::menu, light, 0xD77800, {0xF9F9F9, 0, 0, 0xF7E6D1, 0, 0x808080, 0xDEDEDE, {}, 0xFFD3D3D3}},
        {"menu light, no accent", surface::menu, light, 0, {0xF9F9F9, 0, 0, 0xFCF0E6, 0, 0x808080, 0xDEDEDE, {}, 0xFFD3D3D3}},
        {"menu dark", surface::menu, dark, 0xD77800,
         {0x2B2B2B, 0xFFFFFF, 0xFFFFFF, 0x3E3E3E, 0xFFFFFF, 0xA0A0A0, 0x484848, {}, 0xFF000000}},
        {"menu black", surface::menu, black, 0xD77800, {0, 0xFFFFFF, 0xFFFFFF, 0xFFEB1A, 0, 0x3FF23F, 0xFFFFFF, {}, 0xFFFFFFFF}},
        {"notification light", surface::notification, light, 0x102030,
         {0xF9F9F9, 0, 0x404040, 0xF9F9F9, 0, 0x808080, 0xDADADA, 0x102030, 0}},
        {"notification dark, no accent", surface::notification, dark, 0,
         {0x2B2B2B, 0xFFFFFF, 0xD0D0D0, 0x2B2B2B, 0xFFFFFF, 0xA0A0A0, 0x464646, 0xD77800, 0}},
        {"dialog light", surface::dialog, light, 0, {0xF2F2F2, 0, 0, 0xF2F2F2, 0, 0x808080, 0xF2F2F2, {}, 0}},
        {"dialog dark", surface::dialog, dark, 0, {0x202020, 0xFFFFFF, 0xFFFFFF, 0x202020, 0xFFFFFF, 0xA0A0A0, 0x202020, {}, 0}},
        {"dialog white", surface::dialog, white, 0, {0xFFFFFF, 0, 0, 0x6E0037, 0xFFFFFF, 0x000060, 0, {}, 0xFF000000}},
        {"menu own", surface::menu, {theme::contrast, own}, 0, {3, 4, 4, 5, 6, 7, 10, {}, 0xFF040000}},
        {"notification own", surface::notification, {theme::contrast, own}, 0x102030, {1, 2, 2, 5, 6, 7, 10, {}, 0xFF020000}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(for_surface(c.s, c.sch, c.accent), c.expected);
    }
    EXPECT_FALSE(looks_dark(light));
    EXPECT_TRUE(looks_dark(dark));
    EXPECT_TRUE(looks_dark({theme::contrast, {.window = 0x74C203}})) << "a luma just below half";
    EXPECT_FALSE(looks_dark({theme::contrast, {.window = 0x808080}})) << "half";
}

// State wins over role; an unreadable accent paints black; contrast has no accent and no blended shade.
TEST(theme_colours, buttons_by_state_and_theme) {
    const struct { const char* name; button_look l; scheme sch; uint32_t accent; button_paint expected; } cases[] = {
        {"light hover", {.hover = true}, light, 0, {0xDCDCDC, 0xA0A0A0, 0x000000, 0xFFFFFF}},
        {"dark pushed over hover", {.hover = true, .pushed = true}, dark, 0, {0x282828, 0x303030, 0xFFFFFF, 0xFFFFFF}},
        {"primary hover", {.primary = true, .hover = true}, light, 0xD77800, {0xDF9333, 0xD77800, 0xFFFFFF, 0xFFFFFF}},
        {"primary pushed", {.primary = true, .pushed = true}, light, 0xD77800, {0xC16C00, 0xD77800, 0xFFFFFF, 0xFFFFFF}},
        {"flat light at rest", {.flat = true}, light, 0, {0xF2F2F2, 0xF2F2F2, 0x525252, 0xFFFFFF}},
        {"flat dark hover", {.flat = true, .hover = true}, dark, 0, {0x444444, 0x202020, 0xFFFFFF, 0xFFFFFF}},
        {"flat dark pushed", {.flat = true, .pushed = true}, dark, 0, {0x282828, 0x202020, 0xFFFFFF, 0xFFFFFF}},
        {"flat primary", {.primary = true, .flat = true}, dark, 0x102030, {0x102030, 0x102030, 0xFFFFFF, 0xFFFFFF}},
        {"disabled dark", {.pushed = true, .enabled = false}, dark, 0, {0x404040, 0x303030, 0xA0A0A0, 0xFFFFFF}},
        {"disabled primary", {.primary = true, .enabled = false}, light, 0xD77800, {0xE6E6E6, 0xD77800, 0x808080, 0xFFFFFF}},
        {"no accent, hover", {.primary = true, .hover = true}, light, 0, {0x333333, 0x000000, 0xFFFFFF, 0xFFFFFF}},
        {"black default", {.primary = true}, black, 0xD77800, {0x000000, 0xFFEB1A, 0xFFFFFF, 0xFFFFFF}},
        {"own at rest", {}, {theme::contrast, own}, 0, {8, 10, 9, 9}},
        {"black hover", {.flat = true, .hover = true}, black, 0, {0xFFEB1A, 0xFFFFFF, 0x000000, 0x000000}},
        {"white pushed", {.pushed = true}, white, 0, {0x6E0037, 0x000000, 0xFFFFFF, 0xFFFFFF}},
        {"white disabled", {.hover = true, .enabled = false}, white, 0, {0xFFFFFF, 0x000000, 0x000060, 0x000000}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(for_button(c.l, c.sch, c.accent), c.expected);
    }
}
