#include "tray_window_win32.h"

// Handlers whose subsystems are not built yet. Each does nothing until its module takes it over;
// the tray runs its timers, icons callbacks and commands through them all the same.

void tray_window::refresh_mic_state_async() {}
void tray_window::toggle_microphone_mute() {}
void tray_window::remove_microphone_icon() {}
void tray_window::apply_microphone_settings() {}
void tray_window::on_mic_state(WPARAM, LPARAM) {}
