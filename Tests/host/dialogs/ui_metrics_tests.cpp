#include "dialogs/ui_metrics.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <limits>

TEST(ui_metrics, mul_div_rounds_half_away_from_zero_and_gives_minus_one_when_it_cannot) {
    constexpr int32_t max = std::numeric_limits<int32_t>::max(), min = std::numeric_limits<int32_t>::min();
    const struct { int32_t number, numerator, denominator, result; } cases[] = {
        {9, 144, 96, 14}, {-9, 144, 96, -14}, {9, -144, -96, 14}, {4, 1, 3, 1}, {5, 1, 3, 2},
        {max, 2, 2, max}, {min, 1, 1, min},  // a product beyond 32 bits still divides back
        {max, 2, 1, -1},  {min, 2, 1, -1},  {7, 1, 0, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("{} * {} / {}", c.number, c.numerator, c.denominator));
        EXPECT_EQ(ui_metrics::mul_div(c.number, c.numerator, c.denominator), c.result);
    }
}

TEST(ui_metrics, a_rectangle_measures_from_its_left_and_top_edges) {
    const ui_metrics::rect r{10, 20, 110, 70};
    EXPECT_EQ(r.width(), 100);
    EXPECT_EQ(r.height(), 50);
}
