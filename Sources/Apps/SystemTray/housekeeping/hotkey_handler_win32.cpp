#include <windows.h>

#include "logging/log.h"
#include "platform/paths_win32.h"
#include "process/background_task.h"
#include "process/launch_win32.h"
#include "process/process_tools_win32.h"
#include "tray_window_win32.h"

namespace {

constexpr const wchar_t* HOTKEY_HANDLER = L"Veldrake.HotkeyHandler.exe";

// Once at start: the suite's hotkeys need their resident, which the tray does not watch afterwards.
void launch_hotkey_handler_if_needed() {
    const wchar_t* const names[] = {HOTKEY_HANDLER};
    if (!find_processes_by_name(names).empty()) return;
    const std::wstring path = (module_folder() / HOTKEY_HANDLER).wstring();
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        logging::log(log_severity::warning, L"Hotkey handler not found at {}", path);
        return;
    }
    if (launch_via_shell(path, L"", 0, false)) {
        logging::log(log_severity::info, L"Launched hotkey handler from {}", path);
    } else {
        logging::log(log_severity::warning, L"Failed to launch hotkey handler from {}", path);
    }
}

}  // namespace

void tray_window::launch_hotkey_handler() {
    try {
        run_background_task(L"launch_hotkey_handler_if_needed", launch_hotkey_handler_if_needed);
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "launch_hotkey_handler_if_needed failed: {}", e.what());
    }
}
