#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// The microphone icon's decisions: the handshake by which state results reach the window, when the
// second icon is shown, and what the settings tick does. The window thread owns the record; the shell
// runs the tasks, the monitor and the notification icon as told.
namespace microphone {

struct state {
    uint64_t mic_generation = 0;  // a result carries its request's value; a stale one is dropped
    bool mic_refresh_in_flight = false;
    bool mic_refresh_again = false;  // another request came while one was running
    bool mic_muted = false;          // the last accepted state
    bool mic_present = false;
    bool mic_monitoring = false;  // a setting wants the icon, so the monitor runs
    bool show_when_muted = true;
    bool show_when_on = true;
    bool mic_icon_shown = false;  // the second notification icon exists
    // What the shown icon draws and the theme it was drawn for; read only while it is shown.
    bool mic_icon_muted{};
    bool mic_icon_dark{};
};

// refresh_mic_state_async: the generation of the task to start now, or nothing when one runs already
// (the repeat is remembered).
std::optional<uint64_t> begin_state_request(state& s);

// toggle_microphone_mute: the generation of the toggle task. Any state request under way turns stale.
uint64_t begin_toggle(state& s);

struct state_outcome {
    std::optional<uint64_t> repeat_request;  // start the state task again with this generation
    bool update_icon = false;
};

// on_mic_state with the flags and generation as received.
state_outcome on_mic_state(state& s, uint32_t flags, uint64_t generation);

// Whether the settings show the icon in this state.
bool shown_in_state(const state& s, bool muted);

// The icon that update_microphone_icon wants: monitoring, a microphone, and the setting of its state.
bool icon_wanted(const state& s);

// The test before an update: a result of `present` and `muted` leaves the icon as it is.
bool icon_stays(const state& s, bool present, bool muted);

// The icon went in with the current state and theme.
void icon_shown(state& s, bool dark);

// What a tick of the settings asks of the shell, in this order.
struct settings_plan {
    bool stop_monitor = false;    // stop, remove the icon and destroy its handle
    bool start_monitor = false;   // request the state, then start the monitor
    bool retry_endpoint = false;  // start, reattach, request the state
    bool update_icon = false;
};

// apply_microphone_settings with the two settings as read (both false when the app is disabled),
// whether the monitor has an endpoint under watch, and the theme.
settings_plan apply_settings(state& s, bool show_when_muted, bool show_when_on, bool endpoint_watched, bool dark);

// After the retry's reattach: whether the state request can tell anything new. Where the platform
// has no default microphone and none is known, its answer is already known, and its thread is saved.
bool retry_wants_state_request(const state& s, bool microphone_found);

// The icon's look: glyph code point, colour (ARGB) and tip.
constexpr char32_t glyph_muted = 0xEC54, glyph_on = 0xE720;
constexpr char32_t glyph(bool muted) noexcept { return muted ? glyph_muted : glyph_on; }
uint32_t icon_colour(bool muted, bool dark) noexcept;
std::wstring_view tip_text(bool muted) noexcept;

// The bitmap's side: the small-icon size, but at least 32 pixels.
int32_t icon_size(int32_t small_icon_metric) noexcept;

// Fits an outline with these world bounds to a square of `size`: touching the longer edge, centred on
// the other. Nothing when the outline has no area.
struct fit {
    float scale, dx, dy;
};
std::optional<fit> fit_outline(float size, float x, float y, float width, float height) noexcept;

}  // namespace microphone
