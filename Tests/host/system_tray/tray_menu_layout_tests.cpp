#include "tray_menu_layout.h"
#include "tray_messages.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

using namespace tray_menu_layout;

TEST(tray_menu_layout, seven_items_in_their_order_with_one_separator) {
    const auto items = entries();
    ASSERT_EQ(items.size(), 7u);
    const uint32_t commands[] = {ID_TRAY_SETTINGS, ID_TRAY_UPDATE, ID_TRAY_INDEXING_STATUS, ID_TRAY_FEEDBACK,
                                 ID_TRAY_SUPPORT, 0, ID_TRAY_EXIT};
    for (size_t i = 0; i < items.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(items[i].command, commands[i]);
        // Items are drawn with no prefix processing: an ampersand would print.
        EXPECT_EQ(std::wstring(items[i].text).find(L'&'), std::wstring::npos);
    }
    EXPECT_EQ(std::wstring(items[1].text), L"Download and install update...");
    EXPECT_EQ(items[1].dot, dot_kind::update);
    EXPECT_EQ(items[2].dot, dot_kind::indexing);
}

TEST(tray_menu_layout, colours_in_dark_and_light_with_and_without_accent) {
    EXPECT_EQ(colours_for(true, 0xD77800), (colours{0x2B2B2B, 0xFFFFFF, 0x3E3E3E, 0x484848}));
    EXPECT_EQ(colours_for(false, 0), (colours{0xF9F9F9, 0x000000, 0xFCF0E6, 0xDEDEDE}));
    // Accent 0x00D77800 (B=D7 G=78 R=00): each channel 82 % of the way to white, truncated.
    EXPECT_EQ(colours_for(false, 0xD77800).hover, 0xF7E6D1u);
}

TEST(tray_menu_layout, lengths_scale_at_96_120_and_144_dpi) {
    const struct {
        uint32_t dpi;
        int32_t separator, column, item_width, item_height, lift_px;
    } cases[] = {
        // Text 100 x 16, no bitmap: column 16, width 16 + 24 + 12 + 12 + 100, height 16 + 10.
        {96, 9, 16, 164, 26, 25},
        {120, 11, 20, 20 + 30 + 15 + 15 + 100, 20 + 13, 31},
        // MulDiv(9, 144, 96) is 13.5, rounded up.
        {144, 14, 24, 24 + 36 + 18 + 18 + 100, 24 + 15, 38},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("dpi={}", c.dpi));
        EXPECT_EQ(measure_separator(c.dpi), (item_size{0, c.separator}));
        EXPECT_EQ(measure_item(c.dpi, 100, 16, 0), (item_size{c.item_width, c.item_height}));
        EXPECT_EQ(ui_metrics::scale(lift, c.dpi), c.lift_px);
    }
    // A bitmap wider than the column widens it; a tall text sets the height.
    EXPECT_EQ(measure_item(96, 50, 40, 20), (item_size{20 + 24 + 12 + 12 + 50, 40 + 10}));
}

TEST(tray_menu_layout, draw_geometry_of_an_item_and_a_separator) {
    const ui_metrics::rect item{0, 30, 200, 56};
    const auto g96 = geometry(96, item, 16, 16);
    EXPECT_EQ(g96.hover, (ui_metrics::rect{4, 32, 196, 54}));
    EXPECT_EQ(g96.corner, 8);
    EXPECT_EQ(g96.bitmap_x, 12);
    EXPECT_EQ(g96.bitmap_y, 30 + 5);
    EXPECT_EQ(g96.text, (ui_metrics::rect{12 + 16 + 12, 30, 188, 56}));
    EXPECT_EQ(g96.separator_line, (ui_metrics::rect{4, 43, 196, 44}));

    // At 144 dpi a 16-pixel dot is centred in the 24-pixel column.
    const auto g144 = geometry(144, item, 16, 16);
    EXPECT_EQ(g144.bitmap_x, 18 + 4);
    EXPECT_EQ(g144.text.left, 18 + 24 + 18);
    EXPECT_EQ(g144.hover, (ui_metrics::rect{6, 33, 194, 53}));
    EXPECT_EQ(g144.corner, 12);
}

TEST(tray_menu_layout, font_size_is_clamped_and_weight_words_match_exactly) {
    const struct {
        int64_t size;
        int32_t clamped;
    } sizes[] = {{4, 8}, {8, 8}, {12, 12}, {32, 32}, {100, 32}, {-5, 8}, {INT64_MAX, 32}};
    for (const auto& c : sizes) {
        SCOPED_TRACE(c.size);
        EXPECT_EQ(clamp_font_size(c.size), c.clamped);
    }
    const struct {
        const char* word;
        int32_t weight;
    } weights[] = {{"Light", 300}, {"Regular", 400}, {"Medium", 500}, {"Semibold", 600}, {"Bold", 700},
                   {"bold", 400},  {"Heavy", 400},   {"", 400},       {"SemiBold", 400}};
    for (const auto& c : weights) {
        SCOPED_TRACE(c.word);
        EXPECT_EQ(font_weight(c.word), c.weight);
    }
}

TEST(tray_menu_layout, face_is_the_family_then_variable_text_then_the_system_face) {
    const std::wstring thirty_one(31, L'F'), thirty_two(32, L'F');
    const struct {
        const char* name;
        std::wstring family;
        bool variable_exists;
        std::optional<std::wstring> face;
    } cases[] = {
        {"family", L"Cascadia Code", true, L"Cascadia Code"},
        {"31 characters still fit", thirty_one, false, thirty_one},
        {"32 characters count as none", thirty_two, true, std::wstring(variable_text_face)},
        {"no family, variable text installed", L"", true, std::wstring(variable_text_face)},
        {"no family, no variable text", L"", false, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(choose_font({12, c.family, "Regular"}, 96, c.variable_exists).face, c.face);
    }
    const font_choice at_144 = choose_font({4, L"", "Semibold"}, 144, false);
    EXPECT_EQ(at_144.height, -12);  // 8 after the clamp, at 144 dpi
    EXPECT_EQ(at_144.weight, 600);
}
