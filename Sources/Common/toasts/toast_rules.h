#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

// The data and decisions of one toast, apart from the platform object that shows it.
namespace toast_rules {

constexpr uint32_t FLAGS_WITHOUT_ICON = 0x94;  // NIIF_USER | NIIF_NOSOUND | NIIF_RESPECT_QUIET_TIME
constexpr uint32_t FLAGS_WITH_ICON = 0xB4;     // and NIIF_LARGE_ICON

// A path of zero or one character means no icon.
bool has_icon(std::wstring_view icon_path) noexcept;
// The large-icon flag follows the path, not whether the icon could be loaded.
uint32_t balloon_flags(std::wstring_view icon_path) noexcept;

// Whether the toast stays at a poll: not past its deadline (0: none), and the caller still wants it.
bool keep_showing(uint64_t deadline_ms, uint64_t now_ms, const std::function<bool()>& should_continue);

}  // namespace toast_rules
