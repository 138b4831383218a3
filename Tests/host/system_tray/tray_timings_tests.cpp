#include "tray_timings.h"

#include <gtest/gtest.h>

#include <tuple>

// The host tests link the shipped timings: a short-timers value left in them would sample Windows
// Search every 2 s and nag about a stall after a minute on every user's machine.
TEST(tray_timings, the_shipped_tray_keeps_the_real_intervals) {
    const tray_timings& t = TRAY_TIMINGS;
    EXPECT_EQ(std::tuple(t.settings_poll_ms, t.index_first_poll_ms, t.index_poll_ms, t.stall_threshold_ms, t.version_first_check_ms,
                         t.version_check_ms, t.explorer_give_up_ms, t.for_tests),
              std::tuple(3000u, 60000u, 15000u, 3ull * 60 * 60 * 1000, 180000u, 3600000u, 10000u, false));
}
