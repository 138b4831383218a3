#include <windows.h>

#include "platform/clock_win32.h"

uint64_t active_time_ms() noexcept {
    ULONGLONG unbiased = 0;
    if (QueryUnbiasedInterruptTime(&unbiased)) return unbiased / 10000;
    return GetTickCount64();
}
