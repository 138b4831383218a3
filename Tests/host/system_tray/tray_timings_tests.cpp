#include "tray_timings.h"

#include <gtest/gtest.h>

// The host tests link the shipped timings: a short-timers value left in them would sample Windows
// Search every 2 s and nag about a stall after a minute on every user's machine.
TEST(tray_timings, the_shipped_tray_keeps_the_real_intervals) {
    const tray_timings& t = TRAY_TIMINGS;
    EXPECT_EQ(t.settings_poll_ms, 3000u);
    EXPECT_EQ(t.index_first_poll_ms, 60000u);
    EXPECT_EQ(t.index_poll_ms, 15000u);
    EXPECT_EQ(t.stall_threshold_ms, 3ull * 60 * 60 * 1000);
    EXPECT_EQ(t.version_first_check_ms, 180000u);
    EXPECT_EQ(t.version_check_ms, 3600000u);
    EXPECT_EQ(t.explorer_give_up_ms, 10000u);
    EXPECT_EQ(t.hang_threshold_ms, 10000u);
    EXPECT_FALSE(t.for_tests);
}
