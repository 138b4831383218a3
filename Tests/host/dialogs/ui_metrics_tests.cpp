#include "dialogs/ui_metrics.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <climits>

TEST(ui_metrics, mul_div_rounds_half_away_from_zero_like_the_platform) {
    const struct {
        int32_t number, numerator, denominator, result;
    } cases[] = {
        {9, 144, 96, 14},      {9, 120, 96, 11},    {35, 144, 96, 53},  {35, 120, 96, 44},
        {-14, 144, 96, -21},   {-9, 144, 96, -14},  {-3, 1, 2, -2},     {3, 1, -2, -2},
        {-3, 1, -2, 2},        {5, 0, 96, 0},       {1, 1, 0, -1},      {INT_MAX, 2, 1, -1},
        {INT_MAX, 96, 96, INT_MAX},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("MulDiv({}, {}, {})", c.number, c.numerator, c.denominator));
        EXPECT_EQ(ui_metrics::mul_div(c.number, c.numerator, c.denominator), c.result);
    }
}

TEST(ui_metrics, lighten_and_darken_work_per_channel_and_truncate) {
    EXPECT_EQ(ui_colours::lighten_color(0x000000, 0.2), 0x333333u);
    EXPECT_EQ(ui_colours::lighten_color(0xFFFFFF, 0.82), 0xFFFFFFu);
    EXPECT_EQ(ui_colours::lighten_color(0x0A141E, 0.5), 0x84898Eu);  // 30 -> 142.5, truncated to 142
    EXPECT_EQ(ui_colours::darken_color(0xFF8001, 0.9), 0xE57300u);
    EXPECT_EQ(ui_colours::lighten_color(0xFF000000u | 0x102030, 0.0), 0x102030u) << "the high byte is dropped";
}
