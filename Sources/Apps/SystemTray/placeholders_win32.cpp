#include "tray_window_win32.h"

// Handlers whose subsystems are not built yet. Each does nothing until its module takes it over;
// the tray runs its timers, icons callbacks and commands through them all the same.

void tray_window::start_shell_handler_repair() {}
