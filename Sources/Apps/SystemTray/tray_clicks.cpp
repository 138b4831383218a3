#include "tray_clicks.h"

#include "tray_messages.h"

namespace tray_clicks {

namespace {

void take_cursor(state& s, std::optional<point> cursor) {
    if (cursor) s.click_point = *cursor;
    s.click_point_valid = cursor.has_value();
}

// The menu at the click point; whatever single click was pending is over.
decision open_menu(state& s, bool from_left_click) {
    decision d;
    d.show_menu = menu_request{s.click_point, from_left_click};
    d.kill_single_click_timer = true;
    s.single_click_pending = false;
    s.click_point_valid = false;
    return d;
}

decision open_menu_from_right_click(state& s, std::optional<point> cursor) {
    if (!s.click_point_valid) take_cursor(s, cursor);
    return open_menu(s, false);
}

decision on_main_icon(state& s, uint32_t mouse_message, std::optional<point> cursor) {
    decision d;
    switch (mouse_message) {
        case mouse::left_button_down:
        case mouse::right_button_down:
            take_cursor(s, cursor);
            break;
        case mouse::left_button_up:
            if (s.swallow_next_click) {
                s.swallow_next_click = false;
                break;
            }
            if (!s.click_point_valid) take_cursor(s, cursor);
            s.single_click_pending = true;
            d.start_single_click_timer = true;
            break;
        case mouse::left_button_double_click:
            d.kill_single_click_timer = true;
            s.single_click_pending = false;
            s.click_point_valid = false;
            s.swallow_next_click = true;
            d.open_settings = true;
            break;
        case mouse::right_button_up:
        case mouse::context_menu:
            return open_menu_from_right_click(s, cursor);
        default:
            break;
    }
    return d;
}

decision on_microphone_icon(state& s, uint32_t mouse_message, std::optional<point> cursor) {
    decision d;
    switch (mouse_message) {
        case mouse::left_button_up:
            d.toggle_microphone = true;
            break;
        case mouse::right_button_down:
            take_cursor(s, cursor);
            break;
        case mouse::right_button_up:
        case mouse::context_menu:
            return open_menu_from_right_click(s, cursor);
        default:
            break;
    }
    return d;
}

}  // namespace

bool uses_cursor(uint32_t mouse_message) noexcept {
    switch (mouse_message) {
        case mouse::left_button_down:
        case mouse::left_button_up:
        case mouse::right_button_down:
        case mouse::right_button_up:
        case mouse::context_menu:
            return true;
        default:
            return false;
    }
}

decision on_icon_message(state& s, uint32_t icon_id, uint32_t mouse_message, std::optional<point> cursor,
                         bool menu_open) {
    decision d;
    if (icon_id == TRAY_ICON_MAIN) {
        d = on_main_icon(s, mouse_message, cursor);
    } else if (icon_id == TRAY_ICON_MICROPHONE) {
        d = on_microphone_icon(s, mouse_message, cursor);
    }
    if (menu_open && (d.show_menu || d.start_single_click_timer)) {
        // The open menu takes the click: a second menu inside its loop would draw over the first.
        d.show_menu.reset();
        d.start_single_click_timer = false;
        d.kill_single_click_timer = true;
        s.single_click_pending = false;
        s.click_point_valid = false;
    }
    return d;
}

decision on_single_click_timer(state& s, bool menu_open) {
    if (s.single_click_pending && !menu_open) return open_menu(s, true);
    decision d;
    d.kill_single_click_timer = true;
    s.single_click_pending = false;
    return d;
}

}  // namespace tray_clicks
