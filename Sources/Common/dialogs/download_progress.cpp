#include "dialogs/download_progress.h"

namespace download_progress {

std::optional<int32_t> next_percent(int32_t& last_percent, uint64_t progress, uint64_t maximum) noexcept {
    if (maximum == 0) return std::nullopt;
    const auto percent =
        static_cast<int32_t>(static_cast<double>(progress) / static_cast<double>(maximum) * 100.0);
    if (percent == last_percent) return std::nullopt;
    last_percent = percent;
    return percent;
}

int32_t scale_truncated(int32_t length, int32_t pixels_per_inch) noexcept {
    return static_cast<int32_t>(length * (pixels_per_inch / 96.0));
}

}  // namespace download_progress
