#include "tray_clicks.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

#include <vector>

using namespace tray_clicks;

namespace {

// What the window did over a sequence of icon messages and single-click timer expiries.
struct outcome {
    int timers_started = 0, settings_opened = 0, mutes_toggled = 0;
    std::vector<menu_request> menus;
};

constexpr uint32_t timer_fires = 0;  // a step that stands for TIMER_SINGLE_CLICK
constexpr point at{700, 580};

outcome run(state& s, uint32_t icon, std::initializer_list<uint32_t> steps, std::optional<point> cursor = at) {
    outcome o;
    for (const uint32_t step : steps) {
        const decision d = step == timer_fires ? on_single_click_timer(s) : on_icon_message(s, icon, step, cursor);
        o.timers_started += d.start_single_click_timer;
        o.settings_opened += d.open_settings;
        o.mutes_toggled += d.toggle_microphone;
        if (d.show_menu) o.menus.push_back(*d.show_menu);
    }
    return o;
}

}  // namespace

TEST(tray_clicks, left_clicks_open_settings_on_a_double_click_and_the_menu_after_the_double_click_time) {
    using namespace mouse;
    const struct {
        const char* name;
        std::initializer_list<uint32_t> steps;
        int timers, settings;
        size_t menus;
        bool still_pending;
    } cases[] = {
        {"double click: settings once, the last up swallowed",
         {left_button_down, left_button_up, left_button_double_click, left_button_up, timer_fires}, 1, 1, 0, false},
        {"single click: nothing before the timer", {left_button_down, left_button_up}, 1, 0, 0, true},
        {"single click: the menu when the timer runs out", {left_button_down, left_button_up, timer_fires}, 1, 0, 1, false},
        {"two slow clicks: two menus",
         {left_button_down, left_button_up, timer_fires, left_button_down, left_button_up, timer_fires}, 2, 0, 2, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        state s;
        const auto o = run(s, TRAY_ICON_MAIN, c.steps);
        EXPECT_EQ(o.timers_started, c.timers);
        EXPECT_EQ(o.settings_opened, c.settings);
        ASSERT_EQ(o.menus.size(), c.menus);
        for (const auto& menu : o.menus) EXPECT_EQ(menu, (menu_request{at, true}));
        EXPECT_EQ(s.single_click_pending, c.still_pending);
        EXPECT_FALSE(s.swallow_next_click);
    }
}

TEST(tray_clicks, right_click_opens_the_menu_where_the_button_went_down_on_either_icon) {
    for (const uint32_t icon : {TRAY_ICON_MAIN, TRAY_ICON_MICROPHONE}) {
        for (const uint32_t up : {mouse::right_button_up, mouse::context_menu}) {
            SCOPED_TRACE(testing::Message() << "icon " << icon << " message " << up);
            state s;
            on_icon_message(s, icon, mouse::right_button_down, point{10, 20});
            auto d = on_icon_message(s, icon, up, point{30, 40});
            EXPECT_EQ(d.show_menu, (menu_request{{10, 20}, false}));
            // Without a button-down first, the menu opens where the pointer is now.
            d = on_icon_message(s, icon, up, point{30, 40});
            EXPECT_EQ(d.show_menu, (menu_request{{30, 40}, false}));
            EXPECT_FALSE(s.click_point_valid);
        }
    }
}

TEST(tray_clicks, microphone_icon_toggles_on_each_left_button_up_and_nothing_else) {
    state s;
    const auto o = run(s, TRAY_ICON_MICROPHONE,
                       {mouse::left_button_down, mouse::left_button_up, mouse::left_button_double_click,
                        mouse::left_button_up});
    EXPECT_EQ(o.mutes_toggled, 2);
    EXPECT_EQ(o.timers_started + o.settings_opened + static_cast<int>(o.menus.size()), 0);
    const auto other = run(s, 999, {mouse::left_button_down, mouse::left_button_up, mouse::right_button_up});
    EXPECT_EQ(other.timers_started + other.mutes_toggled + static_cast<int>(other.menus.size()), 0) << "unknown icon";
}

TEST(tray_clicks, unknown_cursor_position_is_taken_again_at_button_up) {
    state s;
    on_icon_message(s, TRAY_ICON_MAIN, mouse::left_button_down, std::nullopt);
    EXPECT_FALSE(s.click_point_valid);
    on_icon_message(s, TRAY_ICON_MAIN, mouse::left_button_up, point{8, 9});
    EXPECT_TRUE(s.click_point_valid);
    EXPECT_EQ(s.click_point, (point{8, 9}));
}
