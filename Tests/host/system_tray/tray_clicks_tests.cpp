#include "tray_clicks.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

#include <vector>

using namespace tray_clicks;

namespace {

// What the window did over a sequence of icon messages and timer expiries.
struct outcome {
    int timers_started = 0, timers_killed = 0, settings_opened = 0, mutes_toggled = 0;
    std::vector<menu_request> menus;

    void add(const decision& d) {
        timers_started += d.start_single_click_timer;
        timers_killed += d.kill_single_click_timer;
        settings_opened += d.open_settings;
        mutes_toggled += d.toggle_microphone;
        if (d.show_menu) menus.push_back(*d.show_menu);
    }
};

constexpr uint32_t timer_fires = 0;  // a step that stands for TIMER_SINGLE_CLICK
constexpr point at{700, 580};

outcome run(state& s, uint32_t icon, std::initializer_list<uint32_t> steps, std::optional<point> cursor = at) {
    outcome o;
    for (const uint32_t step : steps) {
        o.add(step == timer_fires ? on_single_click_timer(s) : on_icon_message(s, icon, step, cursor));
    }
    return o;
}

}  // namespace

TEST(tray_clicks, double_click_opens_settings_once_without_a_menu) {
    state s;
    const auto o = run(s, TRAY_ICON_MAIN,
                       {mouse::left_button_down, mouse::left_button_up, mouse::left_button_double_click,
                        mouse::left_button_up, timer_fires});
    EXPECT_EQ(o.settings_opened, 1);
    EXPECT_TRUE(o.menus.empty());
    EXPECT_EQ(o.timers_started, 1) << "the last button-up is swallowed";
    EXPECT_FALSE(s.swallow_next_click);
    EXPECT_FALSE(s.single_click_pending);
}

TEST(tray_clicks, single_left_click_opens_the_menu_when_the_timer_runs_out) {
    state s;
    auto o = run(s, TRAY_ICON_MAIN, {mouse::left_button_down, mouse::left_button_up});
    EXPECT_TRUE(o.menus.empty()) << "nothing before the double-click time";
    EXPECT_EQ(o.timers_started, 1);
    o = run(s, TRAY_ICON_MAIN, {timer_fires}, point{1, 1});
    ASSERT_EQ(o.menus.size(), 1u);
    EXPECT_EQ(o.menus[0], (menu_request{at, true})) << "where the button went down";
    EXPECT_FALSE(s.click_point_valid);
}

TEST(tray_clicks, two_slow_clicks_open_two_menus) {
    state s;
    const auto o = run(s, TRAY_ICON_MAIN,
                       {mouse::left_button_down, mouse::left_button_up, timer_fires, mouse::left_button_down,
                        mouse::left_button_up, timer_fires});
    EXPECT_EQ(o.menus.size(), 2u);
    EXPECT_EQ(o.settings_opened, 0);
}

TEST(tray_clicks, right_click_opens_the_menu_at_the_button_down_point) {
    const struct {
        uint32_t icon;
        uint32_t up_message;
    } cases[] = {{TRAY_ICON_MAIN, mouse::right_button_up},
                 {TRAY_ICON_MAIN, mouse::context_menu},
                 {TRAY_ICON_MICROPHONE, mouse::right_button_up},
                 {TRAY_ICON_MICROPHONE, mouse::context_menu}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "icon " << c.icon << " message " << c.up_message);
        state s;
        on_icon_message(s, c.icon, mouse::right_button_down, point{10, 20});
        outcome o;
        o.add(on_icon_message(s, c.icon, c.up_message, point{30, 40}));
        ASSERT_EQ(o.menus.size(), 1u);
        EXPECT_EQ(o.menus[0], (menu_request{{10, 20}, false}));
        EXPECT_FALSE(s.click_point_valid);
        // Without a button-down first, the menu opens where the pointer is now.
        o = {};
        o.add(on_icon_message(s, c.icon, c.up_message, point{30, 40}));
        ASSERT_EQ(o.menus.size(), 1u);
        EXPECT_EQ(o.menus[0].at, (point{30, 40}));
    }
}

TEST(tray_clicks, microphone_icon_toggles_on_left_button_up_only) {
    state s;
    const auto o = run(s, TRAY_ICON_MICROPHONE,
                       {mouse::left_button_down, mouse::left_button_up, mouse::left_button_double_click,
                        mouse::left_button_up});
    EXPECT_EQ(o.mutes_toggled, 2);
    EXPECT_EQ(o.timers_started, 0);
    EXPECT_EQ(o.settings_opened, 0);
    EXPECT_TRUE(o.menus.empty());
}

TEST(tray_clicks, other_icons_and_messages_change_nothing) {
    state s;
    const auto o = run(s, 999, {mouse::left_button_down, mouse::left_button_up, mouse::right_button_up});
    const auto p = run(s, TRAY_ICON_MAIN, {0x0200 /* WM_MOUSEMOVE */, 0x0206 /* WM_RBUTTONDBLCLK */});
    EXPECT_EQ(o.timers_started + o.mutes_toggled + o.settings_opened + static_cast<int>(o.menus.size()), 0);
    EXPECT_EQ(p.timers_started + p.settings_opened + static_cast<int>(p.menus.size()), 0);
    EXPECT_FALSE(s.click_point_valid);
}

TEST(tray_clicks, unknown_cursor_position_leaves_the_point_invalid) {
    state s;
    on_icon_message(s, TRAY_ICON_MAIN, mouse::left_button_down, point{5, 5});
    on_icon_message(s, TRAY_ICON_MAIN, mouse::left_button_down, std::nullopt);
    EXPECT_FALSE(s.click_point_valid);
    outcome o;
    o.add(on_icon_message(s, TRAY_ICON_MAIN, mouse::left_button_up, point{8, 9}));
    EXPECT_TRUE(s.click_point_valid) << "the button-up takes the position when the button-down could not";
    EXPECT_EQ(s.click_point, (point{8, 9}));
}
