#pragma once

#include <cstdint>

// Lengths and colours that every window of the suite's user interface shares. Portable: the shells
// feed in what the platform measured and paint what comes out.

namespace ui_metrics {

// MulDiv as the platform computes it: the 64-bit product, rounded half away from zero, and -1 for a
// zero divisor or a result that does not fit.
int32_t mul_div(int32_t number, int32_t numerator, int32_t denominator) noexcept;

// A length given at 96 dpi, at `dpi`.
inline int32_t scale(int32_t length, uint32_t dpi) noexcept {
    return mul_div(length, static_cast<int32_t>(dpi), 96);
}

struct rect {
    int32_t left = 0, top = 0, right = 0, bottom = 0;
    int32_t width() const noexcept { return right - left; }
    int32_t height() const noexcept { return bottom - top; }
    friend bool operator==(const rect&, const rect&) = default;
};

}  // namespace ui_metrics

// Colours are COLORREF values, 0x00BBGGRR; the rules work per channel, so the order does not matter.
namespace ui_colours {

// Each channel moved towards white: c + (255 - c) * amount, truncated.
uint32_t lighten_color(uint32_t color, double amount) noexcept;

// Each channel scaled: c * factor, truncated.
uint32_t darken_color(uint32_t color, double factor) noexcept;

}  // namespace ui_colours
