#pragma once

#include <cstdint>

// The intervals and thresholds of the tray window. Shipped builds have the real ones; the end-to-end
// tier links a second exe whose only difference is tray_timings.cpp compiled with VELDRAKE_SHORT_TIMERS.
struct tray_timings {
    uint32_t settings_poll_ms;
    uint32_t index_first_poll_ms;
    uint32_t index_poll_ms;
    uint64_t stall_threshold_ms;
    uint32_t version_first_check_ms;
    uint32_t version_check_ms;
    uint32_t explorer_give_up_ms;  // a new Explorer window's steps end after this
    uint32_t hang_threshold_ms;  // an unanswered watchdog ping is a hang after this
    bool for_tests;  // such an exe says so in its log
};

extern const tray_timings TRAY_TIMINGS;
