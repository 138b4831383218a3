#include "tray_window_win32.h"

// Handlers whose subsystems are not built yet. Each does nothing until its module takes it over;
// the tray runs its timers, icons callbacks and commands through them all the same.

void tray_window::refresh_mic_state_async() {}
void tray_window::toggle_microphone_mute() {}
void tray_window::remove_microphone_icon() {}
void tray_window::apply_microphone_settings() {}
void tray_window::on_mic_state(WPARAM, LPARAM) {}
void tray_window::start_reconcile() {}
void tray_window::launch_hotkey_handler() {}
void tray_window::start_shell_handler_repair() {}
void tray_window::start_package_registrations() {}
void tray_window::install_window_event_hook() {}
void tray_window::uninstall_window_event_hook() {}
// Until the suite's shutdown exists, Exit ends the tray alone.
void tray_window::start_shutdown_suite() { PostMessageW(hwnd(), WM_SHUTDOWN_DONE, 0, 0); }
