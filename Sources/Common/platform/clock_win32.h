#pragma once

#include <cstdint>

// Milliseconds of time awake since boot: sleep and hibernation do not count.
uint64_t active_time_ms() noexcept;
