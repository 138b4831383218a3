#include "dialogs/button_colours.h"

#include <gtest/gtest.h>

using namespace button_colours;

TEST(button_colours, state_wins_over_role_and_an_unreadable_accent_paints_black) {
    const struct { const char* name; look l; colours expected; } cases[] = {
        {"light hover", {.hover = true}, {0xDCDCDC, 0xA0A0A0, 0x000000}},
        {"dark pushed over hover", {.dark = true, .hover = true, .pushed = true}, {0x282828, 0x303030, 0xFFFFFF}},
        {"primary hover", {.primary = true, .hover = true, .accent = 0xD77800}, {0xDF9333, 0xD77800, 0xFFFFFF}},
        {"primary pushed", {.primary = true, .pushed = true, .accent = 0xD77800}, {0xC16C00, 0xD77800, 0xFFFFFF}},
        {"flat light at rest", {.flat = true}, {0xF2F2F2, 0xF2F2F2, 0x525252}},
        {"flat dark hover", {.flat = true, .dark = true, .hover = true}, {0x444444, 0x202020, 0xFFFFFF}},
        {"flat primary", {.primary = true, .flat = true, .accent = 0x102030}, {0x102030, 0x102030, 0xFFFFFF}},
        {"disabled dark", {.dark = true, .pushed = true, .enabled = false}, {0x404040, 0x303030, 0xA0A0A0}},
        {"disabled primary", {.primary = true, .enabled = false, .accent = 0xD77800}, {0xE6E6E6, 0xD77800, 0x808080}},
        {"no accent", {.primary = true, .accent = 0}, {0x000000, 0x000000, 0xFFFFFF}},
        {"no accent, hover", {.primary = true, .hover = true, .accent = 0}, {0x333333, 0x000000, 0xFFFFFF}},
        {"no accent, pushed", {.primary = true, .pushed = true, .accent = 0}, {0x000000, 0x000000, 0xFFFFFF}},
    };
    for (const auto& c : cases) EXPECT_EQ(for_look(c.l), c.expected) << c.name;
}
