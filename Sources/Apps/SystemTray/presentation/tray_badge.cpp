#include "presentation/tray_badge.h"

namespace tray_badge {

std::optional<uint32_t> badge_colour(uint32_t indexing_status, uint32_t update_status) noexcept {
    if ((indexing_status & 4) && (update_status & 3)) return std::nullopt;
    if (indexing_status & 2) return gold;
    if (update_status & 4) return gold;
    return red;
}

std::optional<uint32_t> update_dot_colour(uint32_t update_status) noexcept {
    if (update_status & 24) return red;
    if (update_status & 4) return gold;
    if (update_status & 3) return green;
    return std::nullopt;
}

std::optional<uint32_t> indexing_dot_colour(uint32_t indexing_status) noexcept {
    if (indexing_status & 9) return red;
    if (indexing_status & 2) return gold;
    if (indexing_status & 4) return green;
    return std::nullopt;
}

}  // namespace tray_badge
