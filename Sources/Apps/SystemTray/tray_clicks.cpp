#include "tray_clicks.h"

#include "tray_messages.h"

namespace tray_clicks {

namespace {

void take_cursor(state& s, std::optional<point> cursor) {
    if (cursor) s.click_point = *cursor;
    s.click_point_valid = cursor.has_value();
}

decision open_menu_from_right_click(state& s, std::optional<point> cursor) {
    if (!s.click_point_valid) take_cursor(s, cursor);
    decision d;
    d.show_menu = menu_request{s.click_point, false};
    s.click_point_valid = false;
    return d;
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

decision on_icon_message(state& s, uint32_t icon_id, uint32_t mouse_message, std::optional<point> cursor) {
    if (icon_id == TRAY_ICON_MAIN) return on_main_icon(s, mouse_message, cursor);
    if (icon_id == TRAY_ICON_MICROPHONE) return on_microphone_icon(s, mouse_message, cursor);
    return {};
}

decision on_single_click_timer(state& s) {
    decision d;
    d.kill_single_click_timer = true;
    if (s.single_click_pending) {
        s.single_click_pending = false;
        d.show_menu = menu_request{s.click_point, true};
        s.click_point_valid = false;
    }
    return d;
}

}  // namespace tray_clicks
