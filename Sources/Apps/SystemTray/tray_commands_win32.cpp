#include <windows.h>

#include <shellapi.h>

#include "logging/log.h"
#include "platform/com_ptr_win32.h"
#include "platform/string_conversion.h"
#include "tray_pages.h"
#include "tray_window_win32.h"

#include <exception>
#include <string>
#include <thread>

// The menu's commands that open a page or a settings panel. Each runs off the window thread: the
// shell may take its time to hand a link to the browser.

namespace {

// A detached, named task that logs what it throws.
template <class F>
void run_named_task(const char* name, F&& task) {
    std::thread([name, task = std::forward<F>(task)]() mutable {
        const com_scope com;
        try {
            task();
        } catch (const std::exception& e) {
            logging::log(log_severity::error, "Background task {} failed: {}", name, e.what());
        } catch (...) {
            logging::log(log_severity::error, "Background task {} failed", name);
        }
    }).detach();
}

void open_with_shell(const std::wstring& target) {
    const auto result = reinterpret_cast<INT_PTR>(ShellExecuteW(nullptr, L"open", target.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    // ShellExecuteW reports success as a value above 32.
    if (result <= 32) logging::log(log_severity::warning, L"Could not open {} ({})", target, result);
}

}  // namespace

void tray_window::on_indexing_status() {
    run_named_task("launch_indexing_options_modern", [] { open_with_shell(L"ms-settings:search"); });
}

void tray_window::on_feedback() {
    run_named_task("open feedback page", [] { open_with_shell(tray_pages::feedback_page()); });
}

void tray_window::on_support_development() {
    run_named_task("open support page", [] { open_with_shell(tray_pages::support_page()); });
}
