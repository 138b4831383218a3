#include "host/settings/settings_sandbox.h"
#include "microphone/microphone_mute.h"
#include "microphone/microphone_settings.h"
#include "microphone/microphone_state.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>
#include <tuple>

using namespace microphone;
namespace mm = microphone_mute;
using namespace std::string_view_literals;

TEST(microphone_state, three_quick_requests_run_at_most_two_tasks) {
    state s{.mic_monitoring = true};
    const uint64_t first = begin_state_request(s).value();
    EXPECT_FALSE(begin_state_request(s) || begin_state_request(s));
    // The first result is out of date: it starts the one repeat and changes nothing.
    const state_outcome repeat = on_mic_state(s, mm::state_request_flags(true, true), first);
    EXPECT_EQ(repeat.repeat_request, first + 1);
    EXPECT_FALSE(repeat.update_icon || s.mic_muted);
    EXPECT_TRUE(s.mic_refresh_in_flight) << "the repeat runs: a fourth request would wait for it";
    const state_outcome last = on_mic_state(s, mm::state_request_flags(true, true), first + 1);
    EXPECT_FALSE(last.repeat_request);
    EXPECT_TRUE(last.update_icon && s.mic_muted && s.mic_present && !s.mic_refresh_in_flight);
    EXPECT_EQ(begin_state_request(s), first + 2);
}

TEST(microphone_state, a_toggle_makes_a_running_request_stale) {
    state s{.mic_monitoring = true};
    const uint64_t request = begin_state_request(s).value();
    const uint64_t toggle = begin_toggle(s);
    EXPECT_EQ(toggle, request + 1);
    // The toggle's result shows at once (by default in either state) and ends no request; the older
    // read changes nothing but ends it.
    EXPECT_TRUE(on_mic_state(s, mm::toggle_result_flags(false), toggle).update_icon);
    EXPECT_TRUE(!s.mic_muted && s.mic_present && s.mic_refresh_in_flight);
    const state_outcome stale = on_mic_state(s, mm::state_request_flags(true, true), request);
    EXPECT_FALSE(stale.update_icon || stale.repeat_request || s.mic_muted || s.mic_refresh_in_flight);
    s.mic_monitoring = false;
    EXPECT_FALSE(on_mic_state(s, mm::toggle_result_flags(true), toggle).update_icon);
    EXPECT_FALSE(s.mic_muted) << "without monitoring a current result is dropped too";
}

TEST(microphone_state, a_result_updates_the_icon_only_when_the_wanted_shape_changes) {
    // The wanted shape: the setting of the state when present. It stays when that equals what is shown
    // and, if shown, the shown icon draws the same state.
    const struct { bool shown, icon_muted, present, muted, when_muted, stays; } cases[] = {
        {false, false, false, true, true, true}, {false, false, true, true, false, true},
        {true, false, true, true, true, false},  {true, true, false, true, true, false},
        {true, false, true, false, false, true}, {true, true, true, false, true, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("shown={} icon_muted={} present={} muted={} when_muted={}", c.shown, c.icon_muted,
                                 c.present, c.muted, c.when_muted));
        state s{.mic_monitoring = true, .show_when_muted = c.when_muted, .show_when_on = !c.when_muted, .mic_icon_shown = c.shown,
                .mic_icon_muted = c.icon_muted};
        EXPECT_EQ(on_mic_state(s, mm::state_request_flags(c.present, c.muted), 0).update_icon, !c.stays);
        EXPECT_EQ(s.mic_present, c.present);
        // The icon that update_microphone_icon then wants.
        EXPECT_EQ(icon_wanted(s), c.present && c.muted == c.when_muted);
        s.mic_monitoring = false;
        EXPECT_FALSE(icon_wanted(s));
    }
    state s{.mic_muted = true};
    icon_shown(s, true);
    EXPECT_TRUE(s.mic_icon_shown && s.mic_icon_muted && s.mic_icon_dark);
}

TEST(microphone_state, settings_start_stop_retry_and_redraw_the_icon) {
    state s;
    settings_plan p = apply_settings(s, true, true, false, false);
    EXPECT_TRUE(p.start_monitor && s.mic_monitoring && !p.update_icon && !p.retry_endpoint);
    EXPECT_FALSE(apply_settings(s, true, true, true, false).update_icon) << "no microphone known before a result";
    s.mic_present = s.mic_muted = s.mic_icon_shown = true;
    p = apply_settings(s, true, false, false, false);
    EXPECT_TRUE(p.retry_endpoint && p.update_icon && !p.start_monitor) << "no endpoint watched; a setting changed";
    // Unchanged settings: the wanted shape against the shown one, the theme included.
    const struct { bool shown, dark, present, update; } ticks[] = {
        {false, false, false, false}, {false, false, true, true}, {true, false, true, false}, {true, true, true, true}, {true, false, false, true}};
    for (const auto& t : ticks) {
        SCOPED_TRACE(fmt::format("shown={} dark={} present={}", t.shown, t.dark, t.present));
        s.mic_icon_shown = t.shown, s.mic_icon_dark = false, s.mic_present = t.present;
        p = apply_settings(s, true, false, true, t.dark);
        EXPECT_EQ(p.update_icon, t.update);
        EXPECT_FALSE(p.retry_endpoint || p.start_monitor || p.stop_monitor);
    }
    p = apply_settings(s, false, false, true, false);
    EXPECT_TRUE(p.stop_monitor && !s.mic_monitoring && !s.mic_present && !s.mic_muted && !p.update_icon);
    EXPECT_FALSE(apply_settings(s, false, false, true, false).stop_monitor) << "once";
}

TEST(microphone_state, settings_come_from_media_keys_and_are_off_while_it_is_disabled) {
    for (const auto& [app, status, general, when_muted, when_on] :
         {std::tuple{"media-keys", "enabled", R"({"showMicrophoneOnTrayIcon": false})", true, false},
          {"media-keys", "disabled", "{}", false, false}, {"other", "disabled", "{}", true, true}}) {
        SCOPED_TRACE(general);
        settings_sandbox sandbox;
        ASSERT_TRUE(sandbox.load(document_with_settings(fmt::format(R"({{"general":{}}})", general), status, app)));
        const show_settings read = read_show_settings(sandbox.file());
        EXPECT_EQ(std::pair(read.when_muted, read.when_on), std::pair(when_muted, when_on));
    }
}

TEST(microphone_state, the_icon_looks_as_its_state_and_theme_say_and_fills_its_square) {
    EXPECT_EQ(std::tuple(glyph(true), glyph(false), icon_size(16), icon_size(32), icon_size(48)),
              std::tuple(U'\xEC54', U'\xE720', 32, 32, 48));
    EXPECT_EQ(std::tuple(icon_colour(true, true), icon_colour(false, true), icon_colour(true, false),
                         icon_colour(false, false)),
              std::tuple(0xFFFF1414u, 0xFFFFFFFFu, 0xFFD70000u, 0xFF000000u));
    EXPECT_EQ(std::pair(tip_text(true), tip_text(false)), std::pair(L"Microphone muted - click to unmute"sv, L"Microphone on - click to mute"sv));
    // A tall outline touches top and bottom, a wide one the sides; both end centred.
    for (const auto& [x, y, w, h, scale, dx, dy] :
         {std::array{2.f, 4.f, 10.f, 20.f, 1.6f, 4.8f, -6.4f}, {1.f, 3.f, 16.f, 8.f, 2.f, -2.f, 2.f}}) {
        const fit f = fit_outline(32, x, y, w, h).value();
        EXPECT_FLOAT_EQ(f.scale, scale);
        EXPECT_FLOAT_EQ(f.dx, dx);
        EXPECT_FLOAT_EQ(f.dy, dy);
    }
    EXPECT_FALSE(fit_outline(32, 0, 0, 0, 5) || fit_outline(32, 0, 0, 5, 0));
    EXPECT_TRUE(fit_outline(32, 0, 0, 0.5f, 0.5f));
}

TEST(microphone_mute, results_toggles_and_device_changes_carry_the_right_values) {
    EXPECT_EQ(std::tuple(mm::endpoint_changed_message, mm::endpoint_volume_changed, mm::default_endpoint_changed),
              std::tuple(1026u, 0u, 1u));
    EXPECT_EQ(std::tuple(mm::state_request_flags(true, true), mm::state_request_flags(true, false),
                         mm::state_request_flags(false, true), mm::toggle_result_flags(true),
                         mm::toggle_result_flags(false), mm::osd_code(true), mm::osd_code(false)),
              std::tuple(7u, 6u, 2u, 5u, 4u, 6u, 7u));
    // A failed read counts as not muted, so the toggle mutes.
    EXPECT_EQ(std::tuple(mm::toggled_state(false, false), mm::toggled_state(false, true), mm::toggled_state(true, false),
                         mm::toggled_state(true, true)), std::tuple(true, true, true, false));
    for (uint32_t flow = 0; flow < 3; ++flow) {
        for (uint32_t role = 0; role < 3; ++role) EXPECT_EQ(mm::default_change_concerns_microphone(flow, role), flow == 1 && role != 1) << flow << role;
    }
}
