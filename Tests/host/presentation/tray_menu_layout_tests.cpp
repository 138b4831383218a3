#include "presentation/tray_menu_layout.h"
#include "tray_messages.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cwchar>
#include <vector>

using namespace tray_menu_layout;

TEST(tray_menu_layout, seven_items_in_their_order_two_with_dots_and_none_with_a_prefix_character) {
    std::vector<uint32_t> commands;
    std::vector<dot_kind> dots;
    for (const entry& e : entries()) {
        commands.push_back(e.command);
        dots.push_back(e.dot);
        // Items are drawn with no prefix processing: an ampersand would print.
        EXPECT_EQ(std::wcschr(e.text, L'&'), nullptr) << commands.size();
    }
    EXPECT_EQ(commands, (std::vector<uint32_t>{ID_TRAY_SETTINGS, ID_TRAY_UPDATE, ID_TRAY_INDEXING_STATUS,
                                               ID_TRAY_FEEDBACK, ID_TRAY_SUPPORT, 0, ID_TRAY_EXIT}));
    using enum dot_kind;
    EXPECT_EQ(dots, (std::vector<dot_kind>{none, update, indexing, none, none, none, none}));
}

TEST(tray_menu_layout, lengths_at_96_120_and_144_dpi) {
    using ui_metrics::rect;
    const struct { uint32_t dpi; int32_t separator, item_width, item_height, bitmap_x, corner; rect text, hover; }
        cases[] = {
        // Text 100 x 16, no bitmap: column 16, width 16 + 24 + 12 + 12 + 100, height 16 + 10.
        {96, 9, 164, 26, 12, 8, {12 + 16 + 12, 30, 188, 56}, {4, 32, 196, 54}},
        {120, 11, 20 + 30 + 15 + 15 + 100, 20 + 13, 15 + 2, 10, {15 + 20 + 15, 30, 185, 56}, {5, 33, 195, 53}},
        // MulDiv(9, 144, 96) is 13.5, rounded up; a 16-pixel dot is centred in the 24-pixel column.
        {144, 14, 24 + 36 + 18 + 18 + 100, 24 + 15, 18 + 4, 12, {18 + 24 + 18, 30, 182, 56}, {6, 33, 194, 53}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("dpi={}", c.dpi));
        EXPECT_EQ(measure_separator(c.dpi), (item_size{0, c.separator}));
        EXPECT_EQ(measure_item(c.dpi, 100, 16, 0), (item_size{c.item_width, c.item_height}));
        const item_geometry g = geometry(c.dpi, {0, 30, 200, 56}, 16, 16);
        EXPECT_EQ(std::pair(g.bitmap_x, g.bitmap_y), std::pair(c.bitmap_x, 30 + 5));
        EXPECT_EQ(g.corner, c.corner);
        EXPECT_EQ(g.text, c.text);
        EXPECT_EQ(g.hover, c.hover);
    }
    // A bitmap wider than the column widens it; a tall text sets the height; the line halves the item.
    EXPECT_EQ(measure_item(96, 50, 40, 20), (item_size{20 + 24 + 12 + 12 + 50, 40 + 10}));
    EXPECT_EQ(geometry(96, {0, 30, 200, 56}, 16, 16).separator_line, (rect{4, 43, 196, 44}));
}

TEST(tray_menu_layout, font_from_size_weight_and_family) {
    const std::wstring thirty_one(31, L'F'), thirty_two(32, L'F');
    const std::optional<std::wstring> variable{variable_text_face};
    const struct { const char* name; font_settings settings; uint32_t dpi; bool variable_exists; font_choice expected; }
        cases[] = {
        {"31 characters still fit", {32, thirty_one, "Light"}, 96, false, {-32, 300, thirty_one}},
        {"32 characters count as none", {100, thirty_two, "Semibold"}, 96, true, {-32, 600, variable}},
        {"no family, no variable text", {INT64_MAX, L"", "Medium"}, 120, false, {-40, 500, std::nullopt}},
        {"too long, no variable text", {12, thirty_two, "Bold"}, 96, false, {-12, 700, std::nullopt}},
        {"clamped to 8, then scaled; weights match exactly", {-5, L"", "bold"}, 144, true, {-12, 400, variable}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(choose_font(c.settings, c.dpi, c.variable_exists), c.expected);
    }
}
