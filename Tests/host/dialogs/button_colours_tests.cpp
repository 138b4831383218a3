#include "dialogs/button_colours.h"

#include <gtest/gtest.h>

using namespace button_colours;

TEST(button_colours, roles_and_states_in_both_themes) {
    const struct {
        const char* name;
        look l;
        colours expected;
    } cases[] = {
        {"light", {}, {0xFAFAFA, 0xA0A0A0, 0x000000}},
        {"light hover", {.hover = true}, {0xDCDCDC, 0xA0A0A0, 0x000000}},
        {"light pushed", {.hover = true, .pushed = true}, {0xC8C8C8, 0xA0A0A0, 0x000000}},
        {"dark", {.dark = true}, {0x303030, 0x303030, 0xFFFFFF}},
        {"dark hover", {.dark = true, .hover = true}, {0x444444, 0x303030, 0xFFFFFF}},
        {"dark pushed", {.dark = true, .pushed = true}, {0x282828, 0x303030, 0xFFFFFF}},
        {"primary", {.primary = true, .accent = 0xD77800}, {0xD77800, 0xD77800, 0xFFFFFF}},
        {"primary hover", {.primary = true, .hover = true, .accent = 0xD77800}, {0xDF9333, 0xD77800, 0xFFFFFF}},
        {"primary pushed", {.primary = true, .pushed = true, .accent = 0xD77800}, {0xC16C00, 0xD77800, 0xFFFFFF}},
        {"flat light", {.flat = true}, {0xF2F2F2, 0xF2F2F2, 0x525252}},
        {"flat dark hover", {.flat = true, .dark = true, .hover = true}, {0x444444, 0x202020, 0xFFFFFF}},
        {"flat primary is primary", {.primary = true, .flat = true, .accent = 0x102030}, {0x102030, 0x102030, 0xFFFFFF}},
        {"disabled light", {.hover = true, .enabled = false}, {0xE6E6E6, 0xA0A0A0, 0x808080}},
        {"disabled dark", {.dark = true, .pushed = true, .enabled = false}, {0x404040, 0x303030, 0xA0A0A0}},
        {"disabled primary", {.primary = true, .enabled = false, .accent = 0xD77800}, {0xE6E6E6, 0xD77800, 0x808080}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(for_look(c.l), c.expected);
    }
}

TEST(button_colours, an_unreadable_accent_paints_a_black_primary_button) {
    const look primary{.primary = true, .accent = 0};
    EXPECT_EQ(for_look(primary).fill, 0x000000u);
    look hover = primary;
    hover.hover = true;
    EXPECT_EQ(for_look(hover).fill, 0x333333u);
    look pushed = primary;
    pushed.pushed = true;
    EXPECT_EQ(for_look(pushed).fill, 0x000000u);
    EXPECT_EQ(for_look(pushed).text, 0xFFFFFFu);
}
