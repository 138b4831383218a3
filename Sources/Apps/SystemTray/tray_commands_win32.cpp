#include <windows.h>

#include <shellapi.h>

#include "logging/log.h"
#include "process/background_task.h"
#include "process/settings_app_win32.h"
#include "presentation/tray_pages.h"
#include "tray_window_win32.h"

#include <string>

// The commands that open Settings, a page or a settings panel. Each runs off the window thread: the
// shell may take its time to hand a link to the browser.

namespace {

void open_with_shell(const std::wstring& target) {
    const auto result =
        reinterpret_cast<INT_PTR>(ShellExecuteW(nullptr, L"open", target.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    // ShellExecuteW reports success as a value above 32.
    if (result <= 32) logging::log(log_severity::warning, L"Could not open {} ({})", target, result);
}

}  // namespace

void tray_window::open_settings_off_ui_thread() {
    // A failed start shows a dialog and waits for it: never on the window thread.
    run_background_task(L"open_settings", [] { settings_app::open_settings_tab_direct("settings"); });
}

void tray_window::on_indexing_status() {
    run_background_task(L"launch_indexing_options_modern", [] { open_with_shell(L"ms-settings:search"); });
}

void tray_window::on_feedback() {
    run_background_task(L"open feedback page", [] { open_with_shell(tray_pages::feedback_page()); });
}

void tray_window::on_support_development() {
    run_background_task(L"open support page", [] { open_with_shell(tray_pages::support_page()); });
}
