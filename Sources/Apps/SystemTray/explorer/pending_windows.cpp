#include "explorer/pending_windows.h"

#include "explorer/registry_port.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

namespace explorer {

bool is_explorer_window_class(std::wstring_view class_name) {
    return class_name == L"CabinetWClass" || class_name == L"ExploreWClass";
}

bool is_explorer_image(std::wstring_view image_path) {
    const size_t slash = image_path.rfind(L'\\');
    return equal_folded(slash == std::wstring_view::npos ? image_path : image_path.substr(slash + 1), L"explorer.exe");
}

void note_window_created(pending_explorer_windows& windows, window_id window, uint32_t process_id, uint64_t now) {
    windows.try_emplace(window, pending_explorer_window{process_id, now});
}

void prune_pending_windows(pending_explorer_windows& windows, uint64_t now, uint64_t give_up_ms,
                           const owner_lookup& owner_of, const log_line& log) {
    for (auto it = windows.begin(); it != windows.end();) {
        const auto& entry = it->second;
        const bool expired = now - entry.first_seen > give_up_ms;
        const auto owner = owner_of(it->first);
        if (expired && owner && !(entry.search_filters_done && entry.quick_pins_done)) {
            // An unfinished start location has no line of its own.
            log(log_severity::info,
                fmt::format(L"[navigation-display] Gave up on a new Explorer window (Search filters {}, Quick pins {})",
                            entry.search_filters_done ? L"applied" : L"not applied",
                            entry.quick_pins_done ? L"applied" : L"not applied"));
        }
        if (!owner || *owner != entry.process_id || expired) {
            it = windows.erase(it);
        } else {
            ++it;
        }
    }
}

}  // namespace explorer
