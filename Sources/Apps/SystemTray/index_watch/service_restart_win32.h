#pragma once

#include <windows.h>

// Starts restart_search_service on a detached thread with `window` as the parent of its failure
// dialog. Throws std::system_error when no thread can be started.
namespace index_watch {
void start_search_service_restart(HWND window);
}
