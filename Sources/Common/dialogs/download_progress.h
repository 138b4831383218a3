#pragma once

#include <cstdint>
#include <optional>

// What the download dialog makes of one progress report.
namespace download_progress {

// The percent to show now, or nothing: the length is unknown (maximum 0) or the percent has not
// changed since `last_percent`, which is updated when something is to be shown. -1 starts it.
std::optional<int32_t> next_percent(int32_t& last_percent, uint64_t progress, uint64_t maximum) noexcept;

// A length at 96 dpi scaled by a device's pixels per inch, truncated.
int32_t scale_truncated(int32_t length, int32_t pixels_per_inch) noexcept;

}  // namespace download_progress
