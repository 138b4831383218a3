#pragma once

#include <windows.h>

namespace housekeeping {

// A "#32770" window of another process appeared: if the settings allow its process, a watcher asks the
// controller to put the Corvane hook in and records the process if it crashes with the hook in.
void on_dialog_window(HWND dialog) noexcept;

}  // namespace housekeeping
