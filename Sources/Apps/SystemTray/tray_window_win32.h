#pragma once

#include <windows.h>

#include "index_watch/index_status.h"
#include "microphone/microphone_icon_win32.h"
#include "microphone/microphone_mute_win32.h"
#include "platform/gdiplus_session_win32.h"
#include "platform/unique_resource_win32.h"
#include "platform/window_impl_win32.h"
#include "tray_clicks.h"
#include "presentation/tray_menu_win32.h"
#include "tray_messages.h"
#include "tray_timings.h"
#include "tray_toasts_win32.h"
#include "updates/update_download.h"
#include "watchdog/ui_watchdog_win32.h"

#include <cstdint>
#include <vector>

// The one top-level window of the process and the hub of the tray: it owns the timers that pace every
// periodic job, takes the results of background threads as posted messages, answers the notification
// icons and runs the menu. Handlers' insides live with their subsystems.
class tray_window : public window_impl<tray_window> {
public:
    tray_window() = default;
    ~tray_window();

    static window_class_info class_info() noexcept;
    LRESULT process_message(UINT message, WPARAM w, LPARAM l, bool& handled);

    // Operations that the subsystems call back.
    void refresh_tray_state();
    void update_tray_icon();
    void remove_tray_icon();
    void show_tray_menu(tray_clicks::point at, bool from_left_click);
    void show_download_toast_as_needed();
    void show_update_complete_toast();
    void refresh_mic_state_async();
    void toggle_microphone_mute();
    void update_microphone_icon();
    void remove_microphone_icon();
    void update_namespace_root_icon();
    void apply_microphone_settings();

private:
    LRESULT on_create();
    void on_destroy();
    void on_timer(UINT_PTR id);
    void on_tray_notify(WPARAM icon_id, LPARAM mouse_message);
    LRESULT on_copy_data(const COPYDATASTRUCT* copy_data);
    LRESULT on_power_event(WPARAM event);
    void on_index_counts(WPARAM items_to_index, LPARAM total_items);
    void on_version_check_result(WPARAM status);
    void on_mic_endpoint_changed(WPARAM default_changed);
    void on_mic_state(WPARAM flags, LPARAM generation);
    bool on_measure_item(MEASUREITEMSTRUCT& item);
    bool on_draw_item(const DRAWITEMSTRUCT& item);
    // The record behind an owner-drawn item's data, or null when it is not one of menu_items.
    tray_menu_item* menu_record(ULONG_PTR item_data) noexcept;
    void release_menu_resources();
    void on_taskbar_created();
    void start_toasts();
    LRESULT on_command(WORD code, WORD id, HWND control, BOOL& handled);

    // Commands.
    void open_settings_off_ui_thread();
    void on_indexing_status();
    void on_update();
    void on_feedback();
    void on_support_development();
    void on_exit();

    // Work that later modules start.
    void apply_click_decision(const tray_clicks::decision& d);
    void start_index_sample_thread();
    void start_version_check_thread();
    void start_update_install();
    void maybe_prompt_index_stall();
    void start_reconcile();
    void launch_hotkey_handler();
    void start_shell_handler_repair();
    void start_package_registrations();
    void install_window_event_hook();
    void uninstall_window_event_hook();
    bool update_completed_since_last_start();
    void start_shutdown_suite();

    // Intervals and thresholds: constants of this window.
    const uint32_t settings_poll_ms = TRAY_TIMINGS.settings_poll_ms;
    const uint32_t index_first_poll_ms = TRAY_TIMINGS.index_first_poll_ms;
    const uint32_t index_poll_ms = TRAY_TIMINGS.index_poll_ms;
    const uint64_t stall_threshold_ms = TRAY_TIMINGS.stall_threshold_ms;
    const uint32_t version_first_check_ms = TRAY_TIMINGS.version_first_check_ms;
    const uint32_t version_check_ms = TRAY_TIMINGS.version_check_ms;

    std::vector<tray_menu_item> menu_items;
    unique_hgdiobj menu_font;
    unique_hgdiobj menu_background_brush;
    menu_metrics_record menu_metrics;
    gdiplus_session gdiplus;
    unique_hicon main_icon;
    unique_hicon logo_icon;  // what the next main_icon with a badge is drawn from
    UINT taskbar_created_message = 0;
    index_watch::tray_state index;  // indexing_status, the stall detector, namespace_icon_applied
    updates::tray_state updates;    // version_check_in_flight, update_status, download_toast_shown, update_notice_pending
    bool menu_open = false;
    bool dark_mode = false;
    tray_clicks::state clicks;  // single_click_pending, click_point, click_point_valid, swallow_next_click
    toast_dispatcher toasts{tray_toast_platform()};
    ui_watchdog watchdog;
    microphone_mute::mute_monitor mute_monitor;
    microphone::tray_state mic;  // mic_generation, the in-flight flags, the state, the icon and its settings
    bool shutting_down = false;
    bool toasts_ended = false;  // stopped with the window: a late request does not start the thread again
};
