#include "tray_window_win32.h"

#include <dwmapi.h>
#include "platform/clock_win32.h"

#include "app_identity_win32.h"
#include "dialogs/theme_helpers_win32.h"
#include "logging/log.h"
#include "logging/log_file_win32.h"
#include "platform/paths_win32.h"
#include "platform/sdk_gaps_win32.h"

tray_window::~tray_window() {
    mute_monitor.stop();
    watchdog.stop_watchdog();
    toasts.stop();
    gdiplus.shutdown();
}

window_class_info tray_window::class_info() noexcept {
    return {TRAY_WINDOW_CLASS, CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS, IDC_ARROW, COLOR_WINDOW + 1};
}

LRESULT tray_window::process_message(UINT message, WPARAM w, LPARAM l, bool& handled) {
    switch (message) {
        case WM_CREATE: return on_create();
        case WM_DESTROY: on_destroy(); return 0;
        case WM_TIMER: on_timer(w); return 0;
        case WM_COPYDATA: return on_copy_data(reinterpret_cast<const COPYDATASTRUCT*>(l));
        case WM_TRAY_NOTIFY: on_tray_notify(w, l); return 0;
        case WM_MIC_ENDPOINT_CHANGED: on_mic_endpoint_changed(w); return 0;
        case WM_POWERBROADCAST: return on_power_event(w);
        case WM_INDEX_COUNTS: on_index_counts(w, l); return 0;
        case WM_WATCHDOG_PING: watchdog.on_ping(); return 0;
        case WM_SHUTDOWN_DONE: DestroyWindow(hwnd()); return 0;
        case WM_MIC_STATE: on_mic_state(w, l); return 0;
        case WM_NAMESPACE_ICON_RETRY: index.namespace_icon_applied = 0; return 0;
        case WM_MEASUREITEM: handled = on_measure_item(*reinterpret_cast<MEASUREITEMSTRUCT*>(l)); return TRUE;
        case WM_DRAWITEM: handled = on_draw_item(*reinterpret_cast<const DRAWITEMSTRUCT*>(l)); return TRUE;
        case WM_START_DOWNLOAD: start_update_install(); return 0;
        case WM_VERSION_CHECK_RESULT: on_version_check_result(w); return 0;
        default: break;
    }
    // Registered at run time, so it cannot be a case label.
    if (taskbar_created_message != 0 && message == taskbar_created_message) {
        on_taskbar_created();
        return 0;
    }
    if (message == WM_COMMAND) {
        BOOL command_handled = TRUE;
        const LRESULT result = on_command(HIWORD(w), LOWORD(w), reinterpret_cast<HWND>(l), command_handled);
        handled = command_handled != FALSE;
        return result;
    }
    handled = false;
    return 0;
}

LRESULT tray_window::on_create() {
    taskbar_created_message = RegisterWindowMessageW(L"TaskbarCreated");
    const std::wstring icon_path = (module_folder() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring();
    // Toasts of an unpackaged process take their name and icon from these values.
    if (sdk::has_no_package()) register_app_user_model_display(icon_path);

    const theme_colours::scheme scheme = common_dialogs::read_scheme();
    // Icons beside a dark contrast taskbar want their dark look; the frame never does in contrast.
    dark_mode = theme_colours::looks_dark(scheme);
    const BOOL dark = common_dialogs::dark_frame(scheme) ? TRUE : FALSE;
    DwmSetWindowAttribute(hwnd(), sdk::DWMWA_USE_IMMERSIVE_DARK_MODE, &dark, sizeof(dark));
    const DWORD round = sdk::DWMWCP_ROUND;
    DwmSetWindowAttribute(hwnd(), sdk::DWMWA_WINDOW_CORNER_PREFERENCE, &round, sizeof(round));

    update_tray_icon();
    start_reconcile();
    apply_microphone_settings();
    SetTimer(hwnd(), TIMER_SETTINGS_POLL, settings_poll_ms, nullptr);
    launch_hotkey_handler();
    start_shell_handler_repair();
    start_package_registrations();
    install_window_event_hook();
    SetTimer(hwnd(), TIMER_INDEX_POLL, index_first_poll_ms, nullptr);
    SetTimer(hwnd(), TIMER_VERSION_CHECK, version_first_check_ms, nullptr);
    if (update_completed_since_last_start()) {
        updates.update_notice_pending = true;
        SetTimer(hwnd(), TIMER_UPDATE_NOTICE, 5000, nullptr);
    }
    watchdog.start_watchdog(hwnd(), log_folder(LOG_SUBJECT));
    return 0;
}

void tray_window::on_destroy() {
    // The watchdog goes first, so that the teardown below cannot look like a hang.
    watchdog.stop_watchdog();
    // TIMER_UPDATE_NOTICE is one-shot and ends with the window.
    for (const UINT_PTR id : {TIMER_INDEX_POLL, TIMER_VERSION_CHECK, TIMER_SETTINGS_POLL, TIMER_SINGLE_CLICK,
                              TIMER_RECONCILE_DELAY}) {
        KillTimer(hwnd(), id);
    }
    uninstall_window_event_hook();
    toasts.stop();
    toasts_ended = true;
    mute_monitor.stop();
    remove_microphone_icon();
    mic.mic_icon_handle.reset();
    remove_tray_icon();
    main_icon.reset();
    PostQuitMessage(0);
}

void tray_window::on_timer(UINT_PTR id) {
    switch (id) {
        case TIMER_INDEX_POLL:
            if (!index.sampling_in_flight) {
                index.sampling_in_flight = true;
                start_index_sample_thread();
            }
            SetTimer(hwnd(), TIMER_INDEX_POLL, index_poll_ms, nullptr);
            return;
        case TIMER_VERSION_CHECK:
            if (updates::begin_version_check(updates)) start_version_check_thread();
            SetTimer(hwnd(), TIMER_VERSION_CHECK, version_check_ms, nullptr);
            return;
        case TIMER_SETTINGS_POLL:
            apply_microphone_settings();
            return;
        case TIMER_SINGLE_CLICK:
            apply_click_decision(tray_clicks::on_single_click_timer(clicks, menu_open));
            return;
        case TIMER_RECONCILE_DELAY:
            KillTimer(hwnd(), TIMER_RECONCILE_DELAY);
            start_reconcile();
            return;
        case TIMER_UPDATE_NOTICE:
        default:
            // The update notice is the fall-through: any other id ends in a refresh too, harmlessly.
            KillTimer(hwnd(), id);
            if (updates.update_notice_pending) {
                updates.update_notice_pending = false;
                show_update_complete_toast();
            }
            refresh_tray_state();
            return;
    }
}

void tray_window::on_tray_notify(WPARAM icon_id, LPARAM mouse_message) {
    const auto message = static_cast<uint32_t>(LOWORD(mouse_message));
    std::optional<tray_clicks::point> where;
    POINT cursor{};
    if (tray_clicks::uses_cursor(message) && GetCursorPos(&cursor)) where = tray_clicks::point{cursor.x, cursor.y};
    apply_click_decision(
        tray_clicks::on_icon_message(clicks, static_cast<uint32_t>(icon_id), message, where, menu_open));
}

void tray_window::apply_click_decision(const tray_clicks::decision& d) {
    if (d.kill_single_click_timer) KillTimer(hwnd(), TIMER_SINGLE_CLICK);
    if (d.start_single_click_timer) SetTimer(hwnd(), TIMER_SINGLE_CLICK, GetDoubleClickTime(), nullptr);
    if (d.open_settings) open_settings_off_ui_thread();
    if (d.toggle_microphone) toggle_microphone_mute();
    if (d.show_menu) show_tray_menu(d.show_menu->at, d.show_menu->from_left_click);
}

// A sibling's toast request: TRUE when the dispatcher took it.
LRESULT tray_window::on_copy_data(const COPYDATASTRUCT* copy_data) {
    if (!copy_data) return toasts.on_copy_data(nullptr) ? TRUE : FALSE;
    const copy_data_view view{copy_data->dwData, copy_data->lpData, copy_data->cbData};
    if (!toasts.on_copy_data(&view)) return FALSE;
    start_toasts();
    return TRUE;
}

// The toast thread and its COM apartment come with the first toast, not at start: most runs show none,
// and under Wine each thread keeps about a megabyte. A toast queued before the start waits for it.
void tray_window::start_toasts() {
    if (toasts_ended || toasts.running()) return;
    try {
        toasts.start();
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "Could not start the toast thread: {}", e.what());
    }
}

LRESULT tray_window::on_power_event(WPARAM event) {
    index_watch::on_power_event(index, static_cast<uint32_t>(event), active_time_ms());
    return TRUE;
}

void tray_window::on_version_check_result(WPARAM status) {
    updates::on_version_check_result(updates, static_cast<uint32_t>(status));
    refresh_tray_state();
}

void tray_window::on_taskbar_created() {
    update_tray_icon();
    // Every notification icon went with the old taskbar: the next result adds it again.
    mic.mic_icon_shown = false;
    if (mic.mic_monitoring) refresh_mic_state_async();
    // A new Explorer needs the context-menu replacement armed again.
    start_reconcile();
}

LRESULT tray_window::on_command(WORD, WORD id, HWND, BOOL& handled) {
    switch (id) {
        case ID_TRAY_SETTINGS: open_settings_off_ui_thread(); break;
        case ID_TRAY_INDEXING_STATUS: on_indexing_status(); break;
        case ID_TRAY_UPDATE: on_update(); break;
        case ID_TRAY_FEEDBACK: on_feedback(); break;
        case ID_TRAY_SUPPORT: on_support_development(); break;
        case ID_TRAY_EXIT: on_exit(); break;
        default: handled = FALSE; break;
    }
    return 0;
}

void tray_window::on_exit() {
    // The icons vanish at once, even though the suite takes a moment to close.
    remove_microphone_icon();
    remove_tray_icon();
    if (shutting_down) return;
    shutting_down = true;
    start_shutdown_suite();
}

void tray_window::refresh_tray_state() {
    dark_mode = theme_colours::looks_dark(common_dialogs::read_scheme());
    show_download_toast_as_needed();
    update_tray_icon();
    maybe_prompt_index_stall();
}
