#include "dialogs/ui_metrics.h"

#include <limits>

namespace ui_metrics {

int32_t mul_div(int32_t number, int32_t numerator, int32_t denominator) noexcept {
    if (denominator == 0) return -1;
    int64_t product = static_cast<int64_t>(number) * numerator;
    int64_t divisor = denominator;
    if (divisor < 0) {
        product = -product;
        divisor = -divisor;
    }
    const int64_t half = divisor / 2;
    const int64_t result = product >= 0 ? (product + half) / divisor : (product - half) / divisor;
    if (result > std::numeric_limits<int32_t>::max() || result < std::numeric_limits<int32_t>::min()) return -1;
    return static_cast<int32_t>(result);
}

}  // namespace ui_metrics

namespace ui_colours {

namespace {

template <class F>
uint32_t per_channel(uint32_t color, F&& f) noexcept {
    uint32_t out = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const uint32_t c = (color >> shift) & 0xFF;
        out |= (static_cast<uint32_t>(f(c)) & 0xFF) << shift;
    }
    return out;
}

}  // namespace

uint32_t lighten_color(uint32_t color, double amount) noexcept {
    return per_channel(color, [&](uint32_t c) { return static_cast<int>(c + (255 - c) * amount); });
}

uint32_t darken_color(uint32_t color, double factor) noexcept {
    return per_channel(color, [&](uint32_t c) { return static_cast<int>(c * factor); });
}

}  // namespace ui_colours
