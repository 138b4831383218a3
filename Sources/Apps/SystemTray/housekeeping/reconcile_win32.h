#pragma once

#include <windows.h>

// The context-menu replacement's reconcile, run by its controller beside the tray, and the window
// watch that asks for one when an Explorer process shows its first window this session.
namespace housekeeping {

// Starts a reconcile thread unless the installer's maintenance runs; returns at once.
void reinject_context_menu_replacement_if_enabled_async();
// The thread's body: up to ten runs of the controller, 2 s apart, until one ends with 0.
void reconcile_context_menu_replacement() noexcept;

// The watch for new windows of other processes; `window` gets TIMER_RECONCILE_DELAY.
void install_window_event_hook(HWND window);
void uninstall_window_event_hook(HWND window);

}  // namespace housekeeping
