#include "presentation/tray_badge.h"
#include "presentation/tray_menu_layout.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

using namespace tray_badge;

TEST(tray_badge, follows_index_then_update_state) {
    const struct { uint32_t index, update; std::optional<uint32_t> colour; } cases[] = {
        {4, 2, std::nullopt}, {4, 1, std::nullopt},  // complete and nothing newer: the plain logo
        {2, 8, gold},                                // the indexing test comes first
        {8, 2, red},          {4, 4, gold},          {4, 8, red}, {0, 0, red}, {1, 1, red},
    };
    for (const auto& c : cases) EXPECT_EQ(badge_colour(c.index, c.update), c.colour) << fmt::format("index={} update={}", c.index, c.update);
}

TEST(tray_badge, menu_dots_follow_their_own_tables) {
    using tray_menu_layout::dot_colour;
    using tray_menu_layout::dot_kind;
    const struct { uint32_t status; std::optional<uint32_t> update, indexing; } cases[] = {
        {0, std::nullopt, std::nullopt}, {1, green, red},  // running newer / unavailable
        {2, green, gold},  {4, gold, green},  // up to date / in progress, minor update / complete
        {16, red, std::nullopt}, {4 | 8, red, red}, {2 | 4, gold, gold},  // a major update; red wins over gold
    };
    // Through the menu's entries: each dot reads its own status, and the others have none.
    for (const auto& c : cases) {
        EXPECT_EQ(std::tuple(dot_colour(dot_kind::update, 0, c.status), dot_colour(dot_kind::indexing, c.status, 0),
                             dot_colour(dot_kind::none, c.status, c.status)), std::tuple(c.update, c.indexing, std::nullopt)) << c.status;
    }
}

TEST(tray_badge, a_menu_dot_is_a_circle_centred_in_its_square_with_five_pixels_around) {
    for (const int32_t size : {16, 20, 24, 32}) {
        const ellipse e = dot_ellipse(size);
        EXPECT_EQ(std::tuple(e.height, e.x, e.x + e.width + e.x), std::tuple(e.width, 5.0f, static_cast<float>(size))) << size;
    }
}
