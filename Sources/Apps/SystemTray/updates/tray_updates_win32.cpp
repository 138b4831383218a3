#include "logging/log.h"
#include "platform/paths_win32.h"
#include "process/background_task.h"
#include "process/settings_app_win32.h"
#include "tray_window_win32.h"
#include "updates/update_download_win32.h"
#include "updates/update_notice_win32.h"
#include "updates/version_check.h"
#include "updates/version_fetch_win32.h"

// The tray window's side of the updates: timers and commands start threads, results come back as
// messages, and toasts go straight to the dispatcher. No network work runs on the window thread.

namespace {

std::wstring logo_path() { return (module_folder() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring(); }

}  // namespace

void tray_window::show_download_toast_as_needed() {
    if (!updates::take_download_toast(updates)) return;
    try {
        const HWND window = hwnd();
        toasts.enqueue({logo_path(), L"Veldrake", L"Update available",
                        L"Yay! There is a new update of the Veldrake available. Click to download and install.",
                        [window] { PostMessageW(window, WM_START_DOWNLOAD, 0, 0); }});
        start_toasts();
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "Exception during toast notification: {}", e.what());
    }
}

void tray_window::show_update_complete_toast() {
    try {
        toasts.enqueue({logo_path(), L"Veldrake", L"Update installed",
                        updates::update_installed_text(updates::current_version_string()),
                        [] { settings_app::open_settings_tab_direct("what-new"); }});
        start_toasts();
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "Exception during update complete toast: {}", e.what());
    }
}

void tray_window::start_version_check_thread() {
    run_background_task(L"version_check", [window = hwnd()] { updates::version_check_worker(window); });
}

void tray_window::on_update() {
    run_background_task(L"update_check_install", [window = hwnd()] { updates::update_worker_check_install(window); });
}

void tray_window::start_update_install() {
    run_background_task(L"update_install", [window = hwnd()] { updates::update_worker_install(window); });
}

bool tray_window::update_completed_since_last_start() { return updates::note_installed_version(); }
