#include "tray_clicks.h"
#include "tray_messages.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <vector>

using namespace tray_clicks;

namespace {

// A flag on a step: the message arrives inside an open menu's loop.
constexpr uint32_t in_menu = 0x10000;
constexpr uint32_t timer_fires = 0;  // TIMER_SINGLE_CLICK ran out

struct outcome {
    int timers_started = 0, timers_killed = 0, settings_opened = 0, mutes_toggled = 0;
    std::vector<menu_request> menus;
    bool still_pending = false;
    friend bool operator==(const outcome&, const outcome&) = default;
    friend void PrintTo(const outcome& o, std::ostream* out) {
        *out << fmt::format("timers +{} -{}, settings {}, mutes {}, menus", o.timers_started, o.timers_killed,
                            o.settings_opened, o.mutes_toggled);
        for (const auto& m : o.menus) *out << fmt::format(" ({}, {}{})", m.at.x, m.at.y, m.from_left_click ? " L" : "");
        *out << (o.still_pending ? ", pending" : "");
    }
};

// The pointer is at {i, 0} during step i, so a menu's position tells which step took it.
outcome run(uint32_t icon, std::initializer_list<uint32_t> steps) {
    state s;
    outcome o;
    int32_t i = 0;
    for (const uint32_t step : steps) {
        const uint32_t message = step & 0xFFFF;
        const bool menu_open = step & in_menu;
        const auto cursor = std::optional<point>(point{i, 0});
        ++i;
        // Without a menu the shell's argument is left to its default.
        const decision d = message == timer_fires
                               ? (menu_open ? on_single_click_timer(s, true) : on_single_click_timer(s))
                               : (menu_open ? on_icon_message(s, icon, message, cursor, true)
                                            : on_icon_message(s, icon, message, cursor));
        o.timers_started += d.start_single_click_timer;
        o.timers_killed += d.kill_single_click_timer;
        o.settings_opened += d.open_settings;
        o.mutes_toggled += d.toggle_microphone;
        if (d.show_menu) o.menus.push_back(*d.show_menu);
    }
    o.still_pending = s.single_click_pending;
    return o;
}

}  // namespace

TEST(tray_clicks, clicks_open_settings_the_menu_or_the_microphone_and_never_a_menu_over_a_menu) {
    using namespace mouse;
    constexpr uint32_t main = TRAY_ICON_MAIN, mic = TRAY_ICON_MICROPHONE;
    const struct {
        const char* name;
        uint32_t icon;
        std::initializer_list<uint32_t> steps;
        outcome expected;
    } cases[] = {
        {"double click: settings once, its up swallowed, a later up counts where it happens", main,
         {left_button_down, left_button_up, left_button_double_click, left_button_up, timer_fires, left_button_up,
          timer_fires},
         {2, 3, 1, 0, {{{5, 0}, true}}, false}},
        {"a right click opens where its button went down, a context menu alone where the pointer is", main,
         {0x0200, context_menu, right_button_down, right_button_up, context_menu},
         {0, 3, 0, 0, {{{1, 0}, false}, {{2, 0}, false}, {{4, 0}, false}}, false}},
        {"left then right within the double-click time: one menu, none when the timer fires inside it", main,
         {left_button_down, left_button_up, right_button_down, right_button_up, timer_fires | in_menu},
         {1, 2, 0, 0, {{{2, 0}, false}}, false}},
        {"clicks inside an open menu start nothing and leave no point behind", main,
         {left_button_down | in_menu, left_button_up | in_menu, right_button_up | in_menu, context_menu},
         {0, 3, 0, 0, {{{3, 0}, false}}, false}},
        {"microphone: a toggle per left up, the menu on a right click", mic,
         {left_button_down, left_button_up, left_button_double_click, left_button_up, right_button_down,
          right_button_up, context_menu | in_menu},
         {0, 2, 0, 2, {{{4, 0}, false}}, false}},
        {"an unknown icon does nothing", 999, {left_button_down, left_button_up, right_button_up}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(run(c.icon, c.steps), c.expected);
    }
}

TEST(tray_clicks, only_button_and_context_menu_messages_read_the_pointer) {
    using namespace mouse;
    for (const uint32_t m : {left_button_down, left_button_up, right_button_down, right_button_up, context_menu}) {
        EXPECT_TRUE(uses_cursor(m)) << m;
    }
    for (const uint32_t m : {0x0200u, left_button_double_click}) EXPECT_FALSE(uses_cursor(m)) << m;
}
