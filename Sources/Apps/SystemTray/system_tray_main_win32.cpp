#include <windows.h>

#include "app_identity_win32.h"
#include "explorer/explorer_start_monitor_win32.h"
#include "installer_gate_win32.h"
#include "logging/log_file_win32.h"
#include "logging/log.h"
#include "platform/com_ptr_win32.h"
#include "platform/thread_stack_win32.h"
#include "platform/unique_resource_win32.h"
#include "tray_messages.h"
#include "tray_timings.h"
#include "tray_window_win32.h"

namespace {

// Opts the process's own menus and dialogs into dark mode. The export has no name, only this
// number, and older systems lack it; the module stays loaded.
void allow_dark_mode() {
    const HMODULE uxtheme = LoadLibraryW(L"uxtheme.dll");
    if (!uxtheme) return;
    using set_preferred_app_mode = int(WINAPI*)(int);
    const auto function =
        reinterpret_cast<set_preferred_app_mode>(reinterpret_cast<void*>(GetProcAddress(uxtheme, MAKEINTRESOURCEA(135))));
    if (function) function(1);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    // Nothing is created while the installer's maintenance runs: no log line, no mutex.
    if (installer_maintenance_running()) return 0;

    unique_owned_mutex single_instance(CreateMutexW(nullptr, TRUE, TRAY_SINGLE_INSTANCE_MUTEX));
    if (GetLastError() == ERROR_ALREADY_EXISTS) return 0;

    start_process_log(LOG_SUBJECT);
    if (TRAY_TIMINGS.for_tests) logging::log(log_severity::warning, "Short timers: this build is for tests");
    set_process_app_user_model_id();
    const com_scope com;
    allow_dark_mode();

    // Declared after COM so that its members are torn down before COM ends.
    tray_window window;
    if (!window.create(TRAY_WINDOW_TITLE, WS_OVERLAPPEDWINDOW)) return 1;
    ShowWindow(window.hwnd(), SW_HIDE);

    explorer_start_monitor monitor;
    monitor.start();
    release_unused_stack_pages();

    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }

    monitor.stop();
    return 0;
}
