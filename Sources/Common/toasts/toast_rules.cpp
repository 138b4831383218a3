#include "toasts/toast_rules.h"

namespace toast_rules {

bool has_icon(std::wstring_view icon_path) noexcept { return icon_path.size() > 1; }

uint32_t balloon_flags(std::wstring_view icon_path) noexcept {
    return has_icon(icon_path) ? FLAGS_WITH_ICON : FLAGS_WITHOUT_ICON;
}

bool keep_showing(uint64_t deadline_ms, uint64_t now_ms, const std::function<bool()>& should_continue) {
    if (deadline_ms != 0 && now_ms >= deadline_ms) return false;
    return !should_continue || should_continue();
}

}  // namespace toast_rules
