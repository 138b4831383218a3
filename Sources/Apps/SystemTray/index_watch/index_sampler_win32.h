#pragma once

#include <windows.h>

#include <cstdint>

// Asks Windows Search how far indexing is, off the window thread: its calls can block for long.
namespace index_watch {

// Items waiting in the SystemIndex catalog (its three queues together), or -1 on any failure.
int32_t get_items_to_index_count();
// Items in the SystemIndex catalog, or -1 on any failure.
int32_t get_total_items_in_index_count();

// Starts a detached thread that reads both counts and posts WM_INDEX_COUNTS to `window`.
// Throws std::system_error when no thread can be started.
void start_index_sample_thread(HWND window);

// Starts `entry(parameter)` on a detached thread; throws std::system_error when it cannot.
void start_detached_thread(unsigned(__stdcall* entry)(void*), void* parameter);

}  // namespace index_watch
