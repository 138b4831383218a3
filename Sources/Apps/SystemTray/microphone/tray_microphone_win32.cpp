#include "tray_window_win32.h"

#include <shellapi.h>

#include "logging/log.h"
#include "microphone/microphone_mute.h"
#include "microphone/microphone_mute_win32.h"
#include "microphone/microphone_settings.h"
#include "process/background_task.h"
#include "settings/high_level_settings.h"

#include <algorithm>
#include <memory>

// The tray window's side of the microphone: the decisions are microphone's; these handlers run the
// tasks, the monitor and the second notification icon as told.

namespace {

NOTIFYICONDATAW microphone_icon_data(HWND window) {
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof(data);
    data.hWnd = window;
    data.uID = TRAY_ICON_MICROPHONE;
    return data;
}

void start_state_task(HWND window, uint64_t generation) {
    run_background_task(L"is_default_microphone_muted", [window, generation] {
        microphone_mute::post_default_microphone_state(window, WM_MIC_STATE, generation);
    });
}

}  // namespace

void tray_window::refresh_mic_state_async() {
    if (const std::optional<uint64_t> generation = microphone::begin_state_request(mic)) {
        start_state_task(hwnd(), *generation);
    }
}

void tray_window::toggle_microphone_mute() {
    const uint64_t generation = microphone::begin_toggle(mic);
    run_background_task(L"toggle_default_microphone_mute", [window = hwnd(), generation] {
        microphone_mute::toggle_default_microphone_mute(window, WM_MIC_STATE, generation);
    });
}

void tray_window::on_mic_endpoint_changed(WPARAM default_changed) {
    if (default_changed == microphone_mute::default_endpoint_changed && mute_monitor.started()) {
        mute_monitor.reattach();
    }
    refresh_mic_state_async();
}

void tray_window::on_mic_state(WPARAM flags, LPARAM generation) {
    const microphone::state_outcome out =
        microphone::on_mic_state(mic, static_cast<uint32_t>(flags), static_cast<uint64_t>(generation));
    if (out.repeat_request) start_state_task(hwnd(), *out.repeat_request);
    if (out.update_icon) update_microphone_icon();
}

void tray_window::apply_microphone_settings() {
    static std::unique_ptr<high_level_settings::settings_file> settings;
    if (!settings) settings = std::make_unique<high_level_settings::settings_file>();
    settings->reload_if_changed(false);
    const microphone::show_settings show = microphone::read_show_settings(*settings);
    const microphone::settings_plan plan =
        microphone::apply_settings(mic, show.when_muted, show.when_on, mute_monitor.watching(), dark_mode);
    if (plan.stop_monitor) {
        mute_monitor.stop();
        remove_microphone_icon();
        mic.mic_icon_handle.reset();
    }
    if (plan.start_monitor) {
        refresh_mic_state_async();
        mute_monitor.start(hwnd());
    }
    if (plan.retry_endpoint) {
        mute_monitor.start(hwnd());
        // Without a microphone this runs every tick: a state task would only say so again, on a thread
        // that costs more than all the rest of the tick.
        if (microphone::retry_wants_state_request(mic, mute_monitor.reattach())) refresh_mic_state_async();
    }
    if (plan.update_icon) update_microphone_icon();
}

void tray_window::update_microphone_icon() {
    if (shutting_down) return;
    if (!microphone::icon_wanted(mic)) {
        remove_microphone_icon();
        return;
    }
    gdiplus.start();
    unique_hicon icon(microphone::render_microphone_icon(mic.mic_muted, dark_mode));
    if (!icon) {
        logging::log(log_severity::error, "Failed to create microphone tray icon: new_icon_handle is nullptr");
        return;
    }
    NOTIFYICONDATAW data = microphone_icon_data(hwnd());
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    data.uCallbackMessage = WM_TRAY_NOTIFY;
    data.hIcon = icon.get();
    const std::wstring_view tip = microphone::tip_text(mic.mic_muted);
    std::copy_n(tip.begin(), std::min(tip.size(), std::size(data.szTip) - 1), data.szTip);
    // Modify first, so that the usual case does not flicker; the first show falls through to add.
    if (!Shell_NotifyIconW(NIM_MODIFY, &data) && !Shell_NotifyIconW(NIM_ADD, &data)) {
        logging::log(log_severity::error, "Failed to add microphone tray icon");
        return;
    }
    microphone::icon_shown(mic, dark_mode);
    // The new icon is in; only now does the old one go.
    mic.mic_icon_handle = std::move(icon);
}

void tray_window::remove_microphone_icon() {
    if (!mic.mic_icon_shown) return;
    NOTIFYICONDATAW data = microphone_icon_data(hwnd());
    Shell_NotifyIconW(NIM_DELETE, &data);
    mic.mic_icon_shown = false;
}
