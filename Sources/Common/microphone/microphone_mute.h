#pragma once

#include <cstdint>

// The default microphone's mute state: what its results and notifications carry, independent of
// Core Audio itself.
namespace microphone_mute {

// The monitor's notification: wParam 0 when the watched endpoint's mute or volume changed, 1 when the
// default capture endpoint changed.
constexpr uint32_t endpoint_changed_message = 0x0400 + 2;  // WM_USER + 2
constexpr uint32_t endpoint_volume_changed = 0, default_endpoint_changed = 1;

// microphone_state_flags, the wParam of a state result.
constexpr uint32_t state_muted = 1;         // the default microphone is muted
constexpr uint32_t state_request_done = 2;  // this result ends a state request
constexpr uint32_t state_present = 4;       // a default microphone exists

// Core Audio's capture flow and the two roles of a microphone, with the platform's numbers.
constexpr uint32_t flow_capture = 1;
constexpr uint32_t role_console = 0, role_communications = 2;

// wParam of the "Veldrake.ShowMediaOsd" broadcast: the microphone is now muted, or now on.
constexpr uint32_t osd_microphone_muted = 6, osd_microphone_on = 7;

// A state request's result: the endpoint read (and its mute), or nothing could be read, which
// includes no default microphone.
constexpr uint32_t state_request_flags(bool read, bool muted) noexcept {
    return read ? state_request_done | state_present | (muted ? state_muted : 0u) : state_request_done;
}

// The toggle's result: the microphone exists and has the new state; it ends no request.
constexpr uint32_t toggle_result_flags(bool muted) noexcept { return state_present | (muted ? state_muted : 0u); }

// The state a toggle sets: the negation of what was read; a failed read counts as not muted.
constexpr bool toggled_state(bool read, bool muted) noexcept { return !(read && muted); }

constexpr uint32_t osd_code(bool now_muted) noexcept { return now_muted ? osd_microphone_muted : osd_microphone_on; }

// Whether a change of default endpoint concerns the microphone under watch.
constexpr bool default_change_concerns_microphone(uint32_t flow, uint32_t role) noexcept {
    return flow == flow_capture && (role == role_console || role == role_communications);
}

}  // namespace microphone_mute
