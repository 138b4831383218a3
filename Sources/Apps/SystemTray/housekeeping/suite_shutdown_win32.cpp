#include <windows.h>

#include "housekeeping/suite_shutdown_win32.h"

#include "housekeeping/suite_shutdown.h"
#include "logging/log.h"
#include "process/background_task.h"
#include "process/process_tools_win32.h"
#include "tray_messages.h"
#include "tray_window_win32.h"

namespace housekeeping {

namespace {

// Shared by all of a list, not given to each.
constexpr uint32_t RESIDENT_GRACE_MS = 5000;
constexpr uint32_t HOST_GRACE_MS = 1000;

}  // namespace

void shutdown_suite(const shutdown_progress& progress) {
    const auto residents = find_processes_by_name(resident_process_names);
    if (progress) progress(shutdown_report(L"Resident processes", residents));
    end_processes(residents, RESIDENT_GRACE_MS);
    // Looked for only now: a resident's end may have released a host.
    const wchar_t* const hosts[] = {SHELL_EXTENSION_HOST};
    const auto extension_hosts = find_processes_with_modules(hosts, shell_extension_modules);
    if (progress) progress(shutdown_report(L"Shell extension hosts", extension_hosts));
    end_processes(extension_hosts, HOST_GRACE_MS);
}

}  // namespace housekeeping

void tray_window::start_shutdown_suite() {
    const HWND window = hwnd();
    try {
        run_background_task(L"shutdown_suite", [window] {
            try {
                housekeeping::shutdown_suite({});
            } catch (...) {
                logging::log(log_severity::error, "shutdown_suite threw; exiting the tray regardless");
            }
            PostMessageW(window, WM_SHUTDOWN_DONE, 0, 0);
        });
    } catch (const std::exception& e) {
        // No thread for the suite: the tray goes alone rather than not at all.
        logging::log(log_severity::error, "shutdown_suite failed: {}", e.what());
        PostMessageW(window, WM_SHUTDOWN_DONE, 0, 0);
    }
}
