#include "tray_window_win32.h"

#include "dialogs/message_dialog_win32.h"
#include "index_watch/index_sampler_win32.h"
#include "index_watch/namespace_icon_win32.h"
#include "index_watch/service_restart_win32.h"
#include "platform/clock_win32.h"

// The tray window's side of the search index watch: the counts come in, the status and the prompt
// go out. The decisions are index_watch's; these handlers only feed it and do what it says.

void tray_window::start_index_sample_thread() { index_watch::start_index_sample_thread(hwnd()); }

void tray_window::on_index_counts(WPARAM items_to_index, LPARAM total_items) {
    // Each count travels in the low 32 bits of its parameter.
    index_watch::on_index_counts(index, static_cast<int32_t>(static_cast<uint32_t>(items_to_index)),
                                 static_cast<int32_t>(static_cast<uint32_t>(total_items)), active_time_ms(),
                                 stall_threshold_ms);
    update_namespace_root_icon();
    refresh_tray_state();
}

void tray_window::update_namespace_root_icon() {
    if (auto selection = index_watch::next_namespace_icon(index.namespace_icon_applied,
                                                          index_watch::namespace_display_on(), index.indexing_status)) {
        index_watch::start_namespace_icon_task(hwnd(), std::move(*selection));
    }
}

void tray_window::maybe_prompt_index_stall() {
    // The dialog's loop serves timers and samples: prompt_open keeps a second prompt from opening.
    if (!index_watch::begin_stall_prompt(index, menu_open)) return;
    common_dialogs::message_dialog dialog(index_watch::stall_prompt_text(index.last_items_to_index, stall_threshold_ms),
                                          true);
    dialog.show_copy = false;
    dialog.ok_button.primary = true;
    dialog.ok_text = L"Restart";
    dialog.cancel_text = L"Not now";
    const int result = dialog.show(hwnd());
    if (index_watch::end_stall_prompt(index, result, active_time_ms())) {
        update_tray_icon();
        index_watch::start_search_service_restart(hwnd());
    }
}
