#include "housekeeping/reconcile.h"

#include <algorithm>

namespace housekeeping {

reconcile_step after_reconcile_attempt(uint32_t attempt, int32_t exit_code) noexcept {
    if (exit_code == 0) return reconcile_step::done;
    return attempt < RECONCILE_ATTEMPTS ? reconcile_step::retry : reconcile_step::give_up;
}

event_use classify_window_event(const window_event& e) noexcept {
    constexpr uint32_t EVENT_OBJECT_CREATE = 0x8000;
    if (e.event != EVENT_OBJECT_CREATE || !e.has_window || e.object_id != 0 || e.child_id != 0) return event_use::ignore;
    if (e.class_name == L"#32770") return event_use::dialog;
    for (const wchar_t* explorer_class : {L"CabinetWClass", L"Progman", L"WorkerW", L"Shell_TrayWnd"}) {
        if (e.class_name == explorer_class) return event_use::explorer_window;
    }
    return event_use::ignore;
}

bool first_sight_of_explorer(std::vector<uint32_t>& reconciled, uint32_t process_id, std::wstring_view image_name) {
    if (process_id == 0 || std::find(reconciled.begin(), reconciled.end(), process_id) != reconciled.end()) return false;
    // Not recorded otherwise: a later window of a process whose name could not be read is tried again.
    if (image_name != L"explorer.exe") return false;
    reconciled.push_back(process_id);
    return true;
}

}  // namespace housekeeping
