#include "platform/scope_exit.h"

#include <gtest/gtest.h>

TEST(scope_exit, runs_once_at_the_end_of_its_scope_unless_released) {
    for (const bool release : {false, true}) {
        int runs = 0;
        {
            scope_exit guard([&] { ++runs; });
            if (release) guard.release();
            EXPECT_EQ(runs, 0);
        }
        EXPECT_EQ(runs, release ? 0 : 1) << release;
    }
}
