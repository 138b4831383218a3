#pragma once

#include "dialogs/ui_metrics.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// The tray menu's items, colours, font and geometry. The shell builds, measures and paints with
// what these functions give; nothing here touches the platform.
namespace tray_menu_layout {

enum class dot_kind { none, update, indexing };

struct entry {
    uint32_t command;  // 0 for the separator
    const wchar_t* text;
    dot_kind dot;
};

// Always all of them, in this order; none is ever hidden, greyed or renamed.
std::span<const entry> entries() noexcept;

// The dot beside an entry (ARGB), or nothing.
std::optional<uint32_t> dot_colour(dot_kind kind, uint32_t indexing_status, uint32_t update_status) noexcept;

// Lengths at 96 dpi.
constexpr int32_t separator_height = 9;
constexpr int32_t separator_inset = 4;
constexpr int32_t min_bitmap_column = 16;
constexpr int32_t left_margin = 12;
constexpr int32_t text_gap = 12;
constexpr int32_t right_margin = 12;
constexpr int32_t extra_width = 24;
constexpr int32_t extra_height = 10;
constexpr int32_t hover_inset_x = 4;
constexpr int32_t hover_inset_y = 2;
constexpr int32_t hover_corner = 8;
constexpr int32_t lift = 25;

struct item_size {
    int32_t width = 0, height = 0;
    friend bool operator==(const item_size&, const item_size&) = default;
};

item_size measure_separator(uint32_t dpi) noexcept;
item_size measure_item(uint32_t dpi, int32_t text_width, int32_t text_height, int32_t bitmap_width) noexcept;

struct item_geometry {
    ui_metrics::rect separator_line;  // the separator's one-pixel line
    ui_metrics::rect hover;           // the rounded rectangle of a selected item
    int32_t corner = 0;               // its corner ellipse, width and height
    int32_t bitmap_x = 0, bitmap_y = 0;
    ui_metrics::rect text;
};

item_geometry geometry(uint32_t dpi, const ui_metrics::rect& item, int32_t bitmap_width, int32_t bitmap_height) noexcept;

// The menu font, from the suite's context-menu appearance settings.
struct font_settings {
    int64_t size_dip = 12;
    std::wstring family;
    std::string weight = "Regular";
};

constexpr int32_t min_font_size = 8;
constexpr int32_t max_font_size = 32;
constexpr wchar_t variable_text_face[] = L"Segoe UI Variable Text";

struct font_choice {
    int32_t height = 0;  // negative: a character height in pixels
    int32_t weight = 400;
    std::optional<std::wstring> face;  // nothing: the system menu font's face stays
    friend bool operator==(const font_choice&, const font_choice&) = default;
};

int32_t clamp_font_size(int64_t size_dip) noexcept;
int32_t font_weight(std::string_view word) noexcept;

// `variable_text_exists`: whether "Segoe UI Variable Text" is installed.
font_choice choose_font(const font_settings& settings, uint32_t dpi, bool variable_text_exists);

}  // namespace tray_menu_layout
