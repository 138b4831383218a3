#include "presentation/tray_menu_layout.h"

#include "presentation/tray_badge.h"
#include "tray_messages.h"

#include <algorithm>
#include <array>

namespace tray_menu_layout {

using ui_metrics::scale;

std::span<const entry> entries() noexcept {
    static constexpr std::array<entry, 7> items{{
        {ID_TRAY_SETTINGS, L"Settings...", dot_kind::none},
        {ID_TRAY_UPDATE, L"Download and install update...", dot_kind::update},
        {ID_TRAY_INDEXING_STATUS, L"Windows indexing status...", dot_kind::indexing},
        {ID_TRAY_FEEDBACK, L"Feedback...", dot_kind::none},
        {ID_TRAY_SUPPORT, L"Support Veldrake...", dot_kind::none},
        {0, L"", dot_kind::none},
        {ID_TRAY_EXIT, L"Exit", dot_kind::none},
    }};
    return items;
}

std::optional<uint32_t> dot_colour(dot_kind kind, uint32_t indexing_status, uint32_t update_status) noexcept {
    switch (kind) {
        case dot_kind::update: return tray_badge::update_dot_colour(update_status);
        case dot_kind::indexing: return tray_badge::indexing_dot_colour(indexing_status);
        case dot_kind::none: break;
    }
    return std::nullopt;
}

item_size measure_separator(uint32_t dpi) noexcept { return {0, scale(separator_height, dpi)}; }

item_size measure_item(uint32_t dpi, int32_t text_width, int32_t text_height, int32_t bitmap_width) noexcept {
    const int32_t column = std::max(scale(min_bitmap_column, dpi), bitmap_width);
    return {column + scale(extra_width, dpi) + scale(left_margin, dpi) + scale(right_margin, dpi) + text_width,
            std::max(text_height, column) + scale(extra_height, dpi)};
}

item_geometry geometry(uint32_t dpi, const ui_metrics::rect& item, int32_t bitmap_width, int32_t bitmap_height) noexcept {
    item_geometry g;
    const int32_t line_top = item.top + item.height() / 2;
    g.separator_line = {item.left + scale(separator_inset, dpi), line_top, item.right - scale(separator_inset, dpi),
                        line_top + 1};
    g.hover = {item.left + scale(hover_inset_x, dpi), item.top + scale(hover_inset_y, dpi),
               item.right - scale(hover_inset_x, dpi), item.bottom - scale(hover_inset_y, dpi)};
    g.corner = scale(hover_corner, dpi);
    const int32_t column = std::max(scale(min_bitmap_column, dpi), bitmap_width);
    g.bitmap_x = item.left + scale(left_margin, dpi) + (column - bitmap_width) / 2;
    g.bitmap_y = item.top + (item.height() - bitmap_height) / 2;
    g.text = {item.left + scale(left_margin, dpi) + column + scale(text_gap, dpi), item.top,
              item.right - scale(right_margin, dpi), item.bottom};
    return g;
}

int32_t clamp_font_size(int64_t size_dip) noexcept {
    return static_cast<int32_t>(std::clamp<int64_t>(size_dip, min_font_size, max_font_size));
}

int32_t font_weight(std::string_view word) noexcept {
    if (word == "Light") return 300;
    if (word == "Medium") return 500;
    if (word == "Semibold") return 600;
    if (word == "Bold") return 700;
    return 400;
}

font_choice choose_font(const font_settings& settings, uint32_t dpi, bool variable_text_exists) {
    font_choice choice;
    choice.height = -scale(clamp_font_size(settings.size_dip), dpi);
    choice.weight = font_weight(settings.weight);
    // A face name has room for 31 characters and its terminator.
    if (!settings.family.empty() && settings.family.size() <= 31) {
        choice.face = settings.family;
    } else if (variable_text_exists) {
        choice.face = variable_text_face;
    }
    return choice;
}

}  // namespace tray_menu_layout
