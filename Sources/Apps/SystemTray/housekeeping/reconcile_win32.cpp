#include <windows.h>

#include "housekeeping/reconcile_win32.h"

#include "housekeeping/dialog_hook_win32.h"
#include "housekeeping/reconcile.h"
#include "installer_gate_win32.h"
#include "logging/log.h"
#include "platform/paths_win32.h"
#include "platform/thread_stack_win32.h"
#include "process/launch_win32.h"
#include "process/process_tools_win32.h"
#include "tray_messages.h"
#include "tray_window_win32.h"

#include <thread>
#include <vector>

namespace housekeeping {

namespace {

constexpr uint32_t RECONCILE_PAUSE_MS = 2000;
constexpr uint32_t RECONCILE_DELAY_MS = 300;  // after the last new Explorer window

// Touched only on the window thread: the hook is out of context, so its callback runs there.
HWINEVENTHOOK event_hook = nullptr;
HWND hook_window = nullptr;
std::vector<uint32_t> reconciled_explorer_pids;

void CALLBACK on_window_event(HWINEVENTHOOK, DWORD event, HWND window, LONG object_id, LONG child_id, DWORD, DWORD) {
    // Every child object of every window of the session comes here: the cheap tests first.
    if (event != EVENT_OBJECT_CREATE || !window || object_id != OBJID_WINDOW || child_id != CHILDID_SELF) return;
    try {
        wchar_t class_name[256] = {};
        GetClassNameW(window, class_name, 256);
        const window_event e{event, true, object_id, child_id, class_name};
        const event_use use = classify_window_event(e);
        if (use == event_use::dialog) return on_dialog_window(window);
        if (use != event_use::explorer_window) return;
        DWORD process_id = 0;
        GetWindowThreadProcessId(window, &process_id);
        if (!first_sight_of_explorer(reconciled_explorer_pids, process_id, process_image_name(process_id))) return;
        DWORD shell_process = 0;
        GetWindowThreadProcessId(GetShellWindow(), &shell_process);
        logging::log(log_severity::info,
                     L"[reinject] explorer.exe pid {} appeared with a new {} and has not been reconciled this session "
                     L"({}); scheduling reconcile",
                     process_id, e.class_name,
                     shell_process == process_id ? L"the shell process" : L"not the shell process - a secondary Explorer");
    } catch (...) {
        return;  // out of memory for a name, the list or the line: this window goes unnoticed
    }
    // Set again, the timer starts over: a burst of new Explorers gives one reconcile.
    if (hook_window) SetTimer(hook_window, TIMER_RECONCILE_DELAY, RECONCILE_DELAY_MS, nullptr);
}

}  // namespace

void reinject_context_menu_replacement_if_enabled_async() {
    if (installer_maintenance_running()) return;
    try {
        std::thread([] {
            reconcile_context_menu_replacement();
            release_unused_stack_pages();
        }).detach();
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "reinject_context_menu_replacement_if_enabled_async failed: {}", e.what());
    }
}

void reconcile_context_menu_replacement() noexcept {
    try {
        const std::wstring controller = (module_folder() / L"Veldrake.ContextMenuReplacement.Controller.exe").wstring();
        if (GetFileAttributesW(controller.c_str()) == INVALID_FILE_ATTRIBUTES) {
            logging::log(log_severity::warning, L"Context Menu Replacement controller not found at {}", controller);
            return;
        }
        for (uint32_t attempt = 1;; ++attempt) {
            const int32_t exit_code = run_and_wait(controller, L"reconcile --allow-restart");
            const reconcile_step step = after_reconcile_attempt(attempt, exit_code);
            if (step == reconcile_step::done) return;
            if (step == reconcile_step::give_up) break;
            logging::log(log_severity::info, "Context Menu Replacement reconcile attempt {} exited with code {}; retrying",
                         attempt, static_cast<uint32_t>(exit_code));
            Sleep(RECONCILE_PAUSE_MS);
        }
        logging::log(log_severity::warning, "Failed to reconcile Context Menu Replacement after {} attempts",
                     RECONCILE_ATTEMPTS);
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "reinject_context_menu_replacement_if_enabled_async failed: {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "reinject_context_menu_replacement_if_enabled_async failed with unknown exception");
    }
}

void install_window_event_hook(HWND window) {
    if (event_hook) return;
    hook_window = window;
    event_hook = SetWinEventHook(EVENT_OBJECT_CREATE, EVENT_OBJECT_CREATE, nullptr, on_window_event, 0, 0,
                                 WINEVENT_OUTOFCONTEXT | WINEVENT_SKIPOWNPROCESS);
    if (event_hook) {
        logging::log(log_severity::info,
                     "[reinject] Watching for Explorer windows from processes this session has not reconciled");
    } else {
        logging::log(log_severity::warning, "[reinject] SetWinEventHook failed; Explorer processes started mid-session "
                                            "will not be re-armed automatically");
    }
}

void uninstall_window_event_hook(HWND window) {
    KillTimer(window, TIMER_RECONCILE_DELAY);
    if (event_hook) UnhookWinEvent(event_hook);
    event_hook = nullptr;
    hook_window = nullptr;
}

}  // namespace housekeeping

void tray_window::start_reconcile() { housekeeping::reinject_context_menu_replacement_if_enabled_async(); }
void tray_window::install_window_event_hook() { housekeeping::install_window_event_hook(hwnd()); }
void tray_window::uninstall_window_event_hook() { housekeeping::uninstall_window_event_hook(hwnd()); }
