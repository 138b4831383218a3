#pragma once

#include <windows.h>

#include "index_watch/namespace_icon.h"

namespace index_watch {

// Whether the status shows on the root node, from the process's one settings file, read again when it
// changed. Any fault leaves the display on.
bool namespace_display_on() noexcept;

// Hands the registry work and Explorer's redraw to a background task. When it fails before the
// registry is right, the task posts WM_NAMESPACE_ICON_RETRY to `window`.
void start_namespace_icon_task(HWND window, icon_selection selection);

}  // namespace index_watch
