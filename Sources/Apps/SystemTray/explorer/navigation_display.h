#pragma once

#include "explorer/pending_windows.h"
#include "explorer/registry_port.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace high_level_settings {
class settings_file;
}

// How the suite's two nodes show in a new Explorer window's navigation pane: collapsed, or expanded
// one or two levels. Windows keeps no such state for a namespace node, so each new window gets it.
namespace explorer {

enum class navigation_display_mode : uint32_t { off = 0, collapsed = 1, expand_first = 2, expand_second = 3 };

constexpr wchar_t SEARCH_FILTERS_NODE[] = L"::{249AE234-08DF-4686-AAF3-5D80A15493BE}";
constexpr wchar_t QUICK_PINS_NODE[] = L"::{EA1CD75E-C7FD-4FF7-B0A1-22FE9B594A6E}";

// "collapsed" and "expand_second" exactly; anything else expands one level.
navigation_display_mode parse_navigation_display(std::wstring_view text);

// Both modes from the settings, once per pass; a failure leaves what they hold by then.
void read_navigation_display_settings(high_level_settings::settings_file& settings,
                                      navigation_display_mode& search_filters_mode,
                                      navigation_display_mode& quick_pins_mode);

// A window's navigation pane tree. Items are the port's own handles, valid for one pass.
class navigation_tree {
public:
    using item = size_t;
    virtual ~navigation_tree() = default;
    // The node among the roots and their children, or nothing.
    virtual std::optional<item> find_tree_item(const wchar_t* parsing_name) = 0;
    virtual bool set_expanded(item node, bool expanded) = 0;
    virtual std::optional<bool> is_expanded(item node) = 0;
    // Nothing ends a row: a failure or no such item.
    virtual std::optional<item> first_child(item node) = 0;
    virtual std::optional<item> next_sibling(item node) = 0;
    virtual std::optional<bool> has_subfolders(item node) = 0;
};

// True when the node's step is finished, false when it must be tried again.
bool apply_navigation_display(navigation_tree& tree, const wchar_t* parsing_name, navigation_display_mode mode,
                              const log_line& log);

struct pass_settings {
    bool start_enabled{};
    navigation_display_mode search_filters_mode = navigation_display_mode::expand_first;
    navigation_display_mode quick_pins_mode = navigation_display_mode::expand_first;
};

// One window's steps in a pass, from a copy of its flags: the start step (run by `navigate`) while it is
// unfinished, then the tree steps unless both are done. `tree` gives the window's tree or null; a
// window without one keeps its display flags for this pass.
pending_explorer_window service_window(pending_explorer_window flags, const pass_settings& settings,
                                       const std::function<bool()>& navigate,
                                       const std::function<navigation_tree*()>& tree, const log_line& log);

// Stores a window's flags after its steps, unless the window went meanwhile; a finished window leaves.
void store_window_flags(pending_explorer_windows& windows, window_id window, const pending_explorer_window& flags);

}  // namespace explorer
