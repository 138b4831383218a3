#pragma once

#include <cstdint>
#include <optional>

// The click logic of the notification icons. A single left click opens the menu only once the
// double-click time has run out; a double click opens Settings without the menu flashing up.
namespace tray_clicks {

// The mouse messages of the classic icon callback, with the platform's numbers.
namespace mouse {
constexpr uint32_t left_button_down = 0x0201;
constexpr uint32_t left_button_up = 0x0202;
constexpr uint32_t left_button_double_click = 0x0203;
constexpr uint32_t right_button_down = 0x0204;
constexpr uint32_t right_button_up = 0x0205;
constexpr uint32_t context_menu = 0x007B;
}  // namespace mouse

struct point {
    int32_t x = 0, y = 0;
    friend bool operator==(const point&, const point&) = default;
};

struct state {
    bool single_click_pending = false;
    point click_point;
    bool click_point_valid = false;
    bool swallow_next_click = false;
};

struct menu_request {
    point at;
    bool from_left_click = false;
    friend bool operator==(const menu_request&, const menu_request&) = default;
};

struct decision {
    bool start_single_click_timer = false;
    bool kill_single_click_timer = false;
    bool open_settings = false;
    bool toggle_microphone = false;
    std::optional<menu_request> show_menu;
};

// Whether the machine reads the pointer's position for this message; the icon also reports every
// mouse move over it, and those need no position.
bool uses_cursor(uint32_t mouse_message) noexcept;

// `cursor` is where the pointer is now, or nothing when the platform could not say. `menu_open`: a
// menu is up, and its modal loop is delivering this message. No menu opens over another, and a menu
// that opens ends a pending single click.
decision on_icon_message(state& s, uint32_t icon_id, uint32_t mouse_message, std::optional<point> cursor,
                         bool menu_open = false);

// The single-click timer ran out.
decision on_single_click_timer(state& s, bool menu_open = false);

}  // namespace tray_clicks
