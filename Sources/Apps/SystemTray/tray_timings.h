#pragma once

#include <cstdint>

// The intervals and thresholds of the tray window. Shipped builds have the real ones; a build for the
// end-to-end tests compiles tray_timings.cpp again with short ones, and nothing else changes.
struct tray_timings {
    uint32_t settings_poll_ms;
    uint32_t index_first_poll_ms;
    uint32_t index_poll_ms;
    uint64_t stall_threshold_ms;
    uint32_t version_first_check_ms;
    uint32_t version_check_ms;
};

extern const tray_timings TRAY_TIMINGS;
