#include <windows.h>

#include <shlobj.h>

#include "explorer/registry_port_win32.h"
#include "explorer/shell_repair_run.h"
#include "logging/log.h"
#include "platform/thread_stack_win32.h"
#include "settings/high_level_settings.h"
#include "tray_window_win32.h"

#include <thread>

namespace explorer {

namespace {

void repair_shell_handler_registrations_async() noexcept {
    try {
        const log_line log = [](log_severity level, const std::wstring& line) { logging::log(level, L"{}", line); };
        high_level_settings::settings_file settings;
        const auto choice = read_repair_choice(settings);
        if (!choice) return;
        platform_registry registry;
        // Once per run, and only when a registration or an override changed.
        if (run_shell_handler_repair(registry, *choice, log)) {
            SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_FLUSHNOWAIT, nullptr, nullptr);
        }
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "repair_shell_handler_registrations_async failed: {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "repair_shell_handler_registrations_async failed with unknown exception");
    }
}

}  // namespace

}  // namespace explorer

void tray_window::start_shell_handler_repair() {
    try {
        std::thread([] {
            explorer::repair_shell_handler_registrations_async();
            release_unused_stack_pages();
        }).detach();
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "repair_shell_handler_registrations_async failed: {}", e.what());
    }
}
