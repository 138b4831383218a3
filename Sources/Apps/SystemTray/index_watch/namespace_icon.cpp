#include "index_watch/namespace_icon.h"

#include "index_watch/index_status.h"
#include "settings/high_level_settings.h"

namespace index_watch {

namespace {
constexpr wchar_t COMPLETE_ICON[] = L"tessary_indexing-complete.ico";
constexpr wchar_t IN_PROGRESS_ICON[] = L"tessary_indexing-in-progress.ico";
constexpr wchar_t PROBLEM_ICON[] = L"tessary_indexing-problem.ico";
}  // namespace

icon_selection select_namespace_icon(bool display_on, uint32_t indexing_status) {
    if (!display_on) {
        return {COMPLETE_ICON, L"Windows Search indexing status is hidden in Tessary settings.", namespace_icon_hidden};
    }
    if ((indexing_status & index_status_complete) != 0) {
        return {COMPLETE_ICON, L"Windows Search indexing is complete.", index_status_complete};
    }
    if ((indexing_status & index_status_in_progress) != 0) {
        return {IN_PROGRESS_ICON, L"Windows Search indexing is in progress.", index_status_in_progress};
    }
    if ((indexing_status & index_status_stuck) != 0) {
        return {PROBLEM_ICON, L"Windows Search indexing appears to be stuck.", index_status_stuck};
    }
    return {PROBLEM_ICON, L"Windows Search indexing status is unavailable.", index_status_unavailable};
}

std::optional<icon_selection> next_namespace_icon(uint32_t& applied, bool display_on, uint32_t indexing_status) {
    icon_selection selection = select_namespace_icon(display_on, indexing_status);
    // A steady status costs no registry work, although samples come every 15 seconds.
    if (selection.value == applied) return std::nullopt;
    applied = selection.value;
    return selection;
}

bool namespace_display_on(high_level_settings::settings_file& settings) {
    settings.reload_if_changed(false);
    try {
        return settings.is_app_enabled("tessary", true) &&
               settings.get_bool("tessary", "general.showIndexingStatusOnNamespaceIcon");
    } catch (...) {
        return true;  // a settings fault must not hide the status
    }
}

}  // namespace index_watch
