#include "explorer/navigation_display.h"

#include "platform/string_conversion.h"
#include "settings/high_level_settings.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

namespace explorer {

navigation_display_mode parse_navigation_display(std::wstring_view text) {
    if (text == L"collapsed") return navigation_display_mode::collapsed;
    if (text == L"expand_second") return navigation_display_mode::expand_second;
    return navigation_display_mode::expand_first;
}

void read_navigation_display_settings(high_level_settings::settings_file& settings,
                                      navigation_display_mode& search_filters_mode,
                                      navigation_display_mode& quick_pins_mode) {
    search_filters_mode = navigation_display_mode::expand_first;
    quick_pins_mode = navigation_display_mode::expand_first;
    try {
        settings.reload_if_changed(false);
        if (!settings.is_app_enabled("tessary", true)) {
            search_filters_mode = navigation_display_mode::off;
            quick_pins_mode = navigation_display_mode::off;
            return;
        }
        const auto mode = [&](const char* shown, const char* display) {
            if (!settings.get_bool("tessary", shown)) return navigation_display_mode::off;
            return parse_navigation_display(settings.get_string("tessary", display, L"expand_first"));
        };
        search_filters_mode = mode("general.showInExplorerPanel", "general.searchFiltersNavigationDisplay");
        quick_pins_mode = mode("general.showQuickPinsInExplorerPanel", "general.quickPinsNavigationDisplay");
    } catch (...) {
        // The modes keep what they hold: a settings fault must not stop the pass.
    }
}

bool apply_navigation_display(navigation_tree& tree, const wchar_t* parsing_name, navigation_display_mode mode,
                              const log_line& log) {
    if (mode == navigation_display_mode::off) return true;
    const auto node = tree.find_tree_item(parsing_name);
    if (!node) return false;
    if (mode == navigation_display_mode::collapsed) return tree.set_expanded(*node, false);
    if (!tree.set_expanded(*node, true)) return false;
    if (mode == navigation_display_mode::expand_first) return true;
    auto child = tree.first_child(*node);
    if (!child) return false;  // the node's children are not loaded yet
    uint32_t children = 0;
    bool all_expanded = true;
    for (; child; child = tree.next_sibling(*child)) {
        ++children;
        // A child without subfolders needs no work and cannot spoil the result. The state is read back
        // because an expand can be accepted and still not stick.
        if (tree.has_subfolders(*child).value_or(false) &&
            !(tree.set_expanded(*child, true) && tree.is_expanded(*child).value_or(false))) {
            all_expanded = false;
        }
    }
    if (!all_expanded) return false;
    log(log_severity::info,
        fmt::format(L"[navigation-display] Expanded {} two levels ({} children)", parsing_name, children));
    return true;
}

pending_explorer_window service_window(pending_explorer_window flags, const pass_settings& settings,
                                       const std::function<bool()>& navigate,
                                       const std::function<navigation_tree*()>& tree, const log_line& log) {
    if (!flags.start_done) flags.start_done = settings.start_enabled ? navigate() : true;
    if (flags.search_filters_done && flags.quick_pins_done) return flags;
    navigation_tree* pane = tree();
    if (!pane) return flags;
    if (!flags.search_filters_done) {
        flags.search_filters_done = apply_navigation_display(*pane, SEARCH_FILTERS_NODE, settings.search_filters_mode, log);
    }
    if (!flags.quick_pins_done) {
        flags.quick_pins_done = apply_navigation_display(*pane, QUICK_PINS_NODE, settings.quick_pins_mode, log);
    }
    return flags;
}

void store_window_flags(pending_explorer_windows& windows, window_id window, const pending_explorer_window& flags) {
    const auto found = windows.find(window);
    if (found == windows.end()) return;  // destroyed while the steps pumped messages
    if (flags.start_done && flags.search_filters_done && flags.quick_pins_done) {
        windows.erase(found);
    } else {
        found->second.start_done = flags.start_done;
        found->second.search_filters_done = flags.search_filters_done;
        found->second.quick_pins_done = flags.quick_pins_done;
    }
}

}  // namespace explorer
