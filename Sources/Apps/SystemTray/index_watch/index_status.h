#pragma once

#include <cstdint>
#include <string>

// The search index watch: turns the sampled counts into one status and decides when to ask the
// user to restart the search service. The window thread owns the record; the shell feeds it the
// samples, the active-time clock and the answers.
namespace index_watch {

// Exactly one bit is set at a time; other parts of the tray read these values.
constexpr uint32_t index_status_unavailable = 1, index_status_in_progress = 2, index_status_complete = 4,
                   index_status_stuck = 8;

// The watch's record in the tray window.
struct tray_state {
    bool sampling_in_flight = false;
    uint32_t indexing_status = index_status_complete;
    int32_t last_items_to_index = -1;
    uint32_t last_total_items = 0;
    uint64_t progress_baseline_ms = 0;  // active time at the last progress
    bool prompt_shown = false;          // for the present stall
    bool prompt_open = false;
    uint32_t namespace_icon_applied = 0;
};

// WM_INDEX_COUNTS: -1 in either count means it could not be read. Returns the new status, also stored.
uint32_t on_index_counts(tray_state& s, int32_t items_to_index, int32_t total_items, uint64_t now_ms,
                         uint64_t stall_threshold_ms);

// WM_POWERBROADCAST: a resume restarts the stall clock and allows a new prompt.
void on_power_event(tray_state& s, uint32_t event, uint64_t now_ms);

// Whether the stall prompt is to be shown now; when true, prompt_shown and prompt_open are set.
bool begin_stall_prompt(tray_state& s, bool menu_open);

// The prompt returned with `result` (1 is "Restart"). Returns whether to restart the service.
bool end_stall_prompt(tray_state& s, int result, uint64_t now_ms);

// The stall limit in words: "3 hours", "1 hour", "90 minutes", "1 minute".
std::wstring stall_duration_text(uint64_t stall_threshold_ms);

// The prompt's body.
std::wstring stall_prompt_text(int32_t items_to_index, uint64_t stall_threshold_ms);

}  // namespace index_watch
