#include "microphone/microphone_state.h"

#include "microphone/microphone_mute.h"

#include <algorithm>

namespace microphone {

std::optional<uint64_t> begin_state_request(state& s) {
    if (s.mic_refresh_in_flight) {
        s.mic_refresh_again = true;
        return std::nullopt;
    }
    s.mic_refresh_in_flight = true;
    return ++s.mic_generation;
}

uint64_t begin_toggle(state& s) { return ++s.mic_generation; }

state_outcome on_mic_state(state& s, uint32_t flags, uint64_t generation) {
    state_outcome out;
    if (flags & microphone_mute::state_request_done) {
        s.mic_refresh_in_flight = false;
        if (s.mic_refresh_again) {
            // The repeat starts now, so that this result, already out of date, need not be shown.
            s.mic_refresh_again = false;
            s.mic_refresh_in_flight = true;
            out.repeat_request = ++s.mic_generation;
            return out;
        }
    }
    if (generation != s.mic_generation || !s.mic_monitoring) return out;
    const bool muted = (flags & microphone_mute::state_muted) != 0;
    const bool present = (flags & microphone_mute::state_present) != 0;
    const bool stays = icon_stays(s, present, muted);
    s.mic_muted = muted;
    s.mic_present = present;
    out.update_icon = !stays;
    return out;
}

bool shown_in_state(const state& s, bool muted) { return muted ? s.show_when_muted : s.show_when_on; }

bool icon_wanted(const state& s) { return s.mic_monitoring && s.mic_present && shown_in_state(s, s.mic_muted); }

bool icon_stays(const state& s, bool present, bool muted) {
    const bool wanted = present && shown_in_state(s, muted);
    if (wanted != s.mic_icon_shown) return false;
    return !wanted || s.mic_icon_muted == muted;
}

void icon_shown(state& s, bool dark) {
    s.mic_icon_shown = true;
    s.mic_icon_muted = s.mic_muted;
    s.mic_icon_dark = dark;
}

settings_plan apply_settings(state& s, bool show_when_muted, bool show_when_on, bool endpoint_watched, bool dark) {
    settings_plan plan;
    const bool changed = show_when_muted != s.show_when_muted || show_when_on != s.show_when_on;
    s.show_when_muted = show_when_muted;
    s.show_when_on = show_when_on;
    if (!show_when_muted && !show_when_on) {
        if (s.mic_monitoring) {
            s.mic_monitoring = false;
            s.mic_muted = false;
            s.mic_present = false;
            plan.stop_monitor = true;
        }
        return plan;
    }
    if (!s.mic_monitoring) {
        // The request's result brings the icon.
        s.mic_monitoring = true;
        plan.start_monitor = true;
        return plan;
    }
    // A microphone that was missing before may be there now.
    plan.retry_endpoint = !endpoint_watched;
    if (changed) {
        plan.update_icon = true;
        return plan;
    }
    // Nothing announces a change of theme: the tick compares the shape it wants with the one shown.
    const bool wanted = icon_wanted(s);
    if (wanted != s.mic_icon_shown) {
        plan.update_icon = true;
    } else if (wanted) {
        plan.update_icon = s.mic_icon_dark != dark;
    }
    return plan;
}

bool retry_wants_state_request(const state& s, bool microphone_found) {
    return microphone_found || s.mic_present || s.mic_icon_shown;
}

uint32_t icon_colour(bool muted, bool dark) noexcept {
    if (dark) return muted ? 0xFFFF1414 : 0xFFFFFFFF;
    return muted ? 0xFFD70000 : 0xFF000000;
}

std::wstring_view tip_text(bool muted) noexcept {
    return muted ? L"Microphone muted - click to unmute" : L"Microphone on - click to mute";
}

int32_t icon_size(int32_t small_icon_metric) noexcept { return std::max(small_icon_metric, 32); }

std::optional<fit> fit_outline(float size, float x, float y, float width, float height) noexcept {
    if (!(width > 0 && height > 0)) return std::nullopt;
    float scale = size / height;
    if (scale * width > size) scale = size / width;
    return fit{scale, (size - scale * width) * 0.5f - x * scale, (size - scale * height) * 0.5f - y * scale};
}

}  // namespace microphone
