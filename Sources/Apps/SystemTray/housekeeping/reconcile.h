#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The context-menu reconcile: which window events ask for one, and how its attempts go on.
namespace housekeeping {

constexpr uint32_t RECONCILE_ATTEMPTS = 10;

// After attempt `attempt` (1 to RECONCILE_ATTEMPTS) ended with `exit_code`.
enum class reconcile_step { done, retry, give_up };
reconcile_step after_reconcile_attempt(uint32_t attempt, int32_t exit_code) noexcept;

// One EVENT_OBJECT_CREATE as the callback sees it, in the order its tests read it.
struct window_event {
    uint32_t event = 0;
    bool has_window = false;
    int32_t object_id = 0, child_id = 0;
    std::wstring class_name;
};

// What the callback does with a window event, before it reads the window's process.
enum class event_use { ignore, dialog, explorer_window };
event_use classify_window_event(const window_event& e) noexcept;

// The process behind an Explorer-class window: whether this is the first sight of an explorer.exe
// process, which records it and schedules a reconcile. `image_name` is lower case, "" when unreadable.
bool first_sight_of_explorer(std::vector<uint32_t>& reconciled, uint32_t process_id, std::wstring_view image_name);

}  // namespace housekeeping
