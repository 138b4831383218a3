#pragma once

#include <cstdint>
#include <optional>

// What the main icon and the menu's dots say about the index and the updates. Colours are ARGB.
namespace tray_badge {

constexpr uint32_t red = 0xFFFF0000;
constexpr uint32_t gold = 0xFFFFD700;
constexpr uint32_t green = 0xFF32CD32;

// The badge on the main icon, or nothing: the plain logo means the index is complete and no update
// waits.
std::optional<uint32_t> badge_colour(uint32_t indexing_status, uint32_t update_status) noexcept;

// The dots beside the menu's update and indexing items, or nothing.
std::optional<uint32_t> update_dot_colour(uint32_t update_status) noexcept;
std::optional<uint32_t> indexing_dot_colour(uint32_t indexing_status) noexcept;

// The outline keeps a badge apart from the taskbar in either theme.
constexpr uint32_t badge_outline(bool dark) noexcept { return dark ? 0xFF000000 : 0xFFA9A9A9; }

// The badge sits in the lower left corner of the 32-pixel logo.
struct ellipse {
    float x, y, width, height;
};
constexpr int32_t icon_size = 32;
constexpr ellipse badge_ellipse{0.5f, 19.0f, 12.0f, 12.0f};

// The dot fills a small-icon square less 5 pixels on each side.
constexpr ellipse dot_ellipse(int32_t size) noexcept {
    return {5.0f, 5.0f, static_cast<float>(size - 10), static_cast<float>(size - 10)};
}

}  // namespace tray_badge
