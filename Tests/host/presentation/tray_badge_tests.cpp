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
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("index={} update={}", c.index, c.update));
        EXPECT_EQ(badge_colour(c.index, c.update), c.colour);
    }
}

TEST(tray_badge, menu_dots_follow_their_own_tables) {
    using tray_menu_layout::dot_colour;
    using tray_menu_layout::dot_kind;
    const struct { uint32_t status; std::optional<uint32_t> update, indexing; } cases[] = {
        {0, std::nullopt, std::nullopt},
        {1, green, red},          // running newer / unavailable
        {2, green, gold},         // up to date / in progress
        {4, gold, green},         // minor update / complete
        {16, red, std::nullopt},  // major update
        {4 | 8, red, red},        // red wins over gold
        {2 | 4, gold, gold},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("status={}", c.status));
        // Through the menu's entries: each dot reads its own status, and the others have none.
        EXPECT_EQ(dot_colour(dot_kind::update, 0, c.status), c.update);
        EXPECT_EQ(dot_colour(dot_kind::indexing, c.status, 0), c.indexing);
        EXPECT_EQ(dot_colour(dot_kind::none, c.status, c.status), std::nullopt);
    }
}

TEST(tray_badge, a_menu_dot_is_a_circle_centred_in_its_square_with_five_pixels_around) {
    for (const int32_t size : {16, 20, 24, 32}) {
        const ellipse e = dot_ellipse(size);
        EXPECT_EQ(e.width, e.height) << size;
        EXPECT_EQ(e.x, 5.0f) << size;
        EXPECT_EQ(e.x + e.width + e.x, static_cast<float>(size)) << size;
    }
}
