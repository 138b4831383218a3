#pragma once

#include "explorer/registry_port.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string_view>

// The new Explorer windows that the start monitor still works on, from their creation event until
// their steps are done, they are gone, or they are too old. Fed events and a clock; the monitor's
// thread does the platform calls.
namespace explorer {

struct pending_explorer_window {
    uint32_t process_id = 0;  // the window's owner when first seen
    uint64_t first_seen = 0;  // ms
    bool start_done = false;
    bool search_filters_done = false;
    bool quick_pins_done = false;
};

using window_id = uintptr_t;
using pending_explorer_windows = std::map<window_id, pending_explorer_window>;

constexpr uint32_t PENDING_PASS_MS = 100;

// Only these classes get past the first test: the hook sees every window creation on the desktop.
bool is_explorer_window_class(std::wstring_view class_name);
// The owner's image is explorer.exe, in any case.
bool is_explorer_image(std::wstring_view image_path);

// A window seen again keeps its first entry.
void note_window_created(pending_explorer_windows& windows, window_id window, uint32_t process_id, uint64_t now);

// The window's present owner, or nothing when the window is gone.
using owner_lookup = std::function<std::optional<uint32_t>(window_id)>;

// Drops windows that are gone, reused by another process, or older than `give_up_ms` (10 s in the
// shipped tray); a window given up on with a display step unfinished is logged.
void prune_pending_windows(pending_explorer_windows& windows, uint64_t now, uint64_t give_up_ms,
                           const owner_lookup& owner_of, const log_line& log);

}  // namespace explorer
