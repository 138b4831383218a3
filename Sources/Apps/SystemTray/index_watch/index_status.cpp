#include "index_watch/index_status.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

namespace index_watch {

namespace {

constexpr int RESTART_ANSWER = 1;
// PBT_APMRESUMESUSPEND and PBT_APMRESUMEAUTOMATIC: a resume from sleep.
constexpr uint32_t power_resume_suspend = 7, power_resume_automatic = 18;

void restart_stall_clock(tray_state& s, uint64_t now_ms) {
    s.progress_baseline_ms = now_ms;
    s.prompt_shown = false;
}

}  // namespace

uint32_t on_index_counts(tray_state& s, int32_t items_to_index, int32_t total_items, uint64_t now_ms,
                         uint64_t stall_threshold_ms) {
    s.sampling_in_flight = false;
    // Any change is progress, a rise or a change to or from an unreadable count included.
    const auto total = static_cast<uint32_t>(total_items);
    if (items_to_index != s.last_items_to_index || total != s.last_total_items) {
        s.last_items_to_index = items_to_index;
        s.last_total_items = total;
        restart_stall_clock(s, now_ms);
    }
    if (items_to_index == -1) {
        s.indexing_status = index_status_unavailable;
    } else if (items_to_index == 0) {
        s.indexing_status = index_status_complete;
    } else {
        // A baseline of 0 was never set; unsigned, so a clock that went back counts as a stall.
        const bool stalled = s.progress_baseline_ms != 0 && now_ms - s.progress_baseline_ms >= stall_threshold_ms;
        s.indexing_status = stalled ? index_status_stuck : index_status_in_progress;
    }
    return s.indexing_status;
}

void on_power_event(tray_state& s, uint32_t event, uint64_t now_ms) {
    if (event == power_resume_suspend || event == power_resume_automatic) restart_stall_clock(s, now_ms);
}

bool begin_stall_prompt(tray_state& s, bool menu_open) {
    if ((s.indexing_status & index_status_stuck) == 0 || s.prompt_shown || s.prompt_open || menu_open) return false;
    s.prompt_shown = true;
    s.prompt_open = true;
    return true;
}

bool end_stall_prompt(tray_state& s, int result, uint64_t now_ms) {
    s.prompt_open = false;
    // prompt_shown stays set whatever the answer: one prompt per stall.
    if (result != RESTART_ANSWER) return false;
    s.progress_baseline_ms = now_ms;
    s.indexing_status = index_status_in_progress;
    return true;
}

std::wstring stall_duration_text(uint64_t stall_threshold_ms) {
    const uint64_t minutes = stall_threshold_ms / 60000;
    if (minutes >= 60 && minutes % 60 == 0) {
        return fmt::format(L"{} {}", minutes / 60, minutes == 60 ? L"hour" : L"hours");
    }
    return fmt::format(L"{} {}", minutes, minutes == 1 ? L"minute" : L"minutes");
}

std::wstring stall_prompt_text(int32_t items_to_index, uint64_t stall_threshold_ms) {
    return fmt::format(L"Windows Search indexing appears to be stuck: {} item(s) are waiting to be indexed and no "
                       L"progress has been made in the last {} of active use.\n\nDo you want to restart the Windows "
                       L"Search service to get indexing going again? Windows may ask you to approve an "
                       L"administrator prompt.",
                       items_to_index, stall_duration_text(stall_threshold_ms));
}

}  // namespace index_watch
