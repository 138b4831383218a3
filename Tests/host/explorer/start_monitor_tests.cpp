#include "explorer/navigation_display.h"
#include "explorer/pending_windows.h"
#include "explorer/start_location.h"
#include "host/explorer/fake_registry.h"
#include "platform/string_conversion.h"

#include <gtest/gtest.h>

#include <set>

using namespace explorer;

namespace {
struct recorded {
    std::vector<std::wstring> lines;
    log_line sink() { return [this](log_severity, const std::wstring& line) { lines.push_back(line); }; }
};
void plant_text(fake_registry& r, const wchar_t* key, const wchar_t* name, const std::wstring& text) {
    r.plant(hive::current_user, key, name, {REG_SZ_TYPE, string_bytes(text)});
}
void plant_flag(fake_registry& r, uint32_t flag) {
    r.plant(hive::current_user, SUITE_KEY, START_MONITOR_VALUE, {REG_DWORD_TYPE, std::string(reinterpret_cast<char*>(&flag), 4)});
}
}  // namespace

TEST(start_location, flag_is_adopted_once_from_the_wish_or_the_legacy_override) {
    const auto none = std::nullopt;
    const std::wstring legacy = LEGACY_OVERRIDE_COMMAND, absent = L"Adopted the starting location flag: 0 (legacy override absent)";
    const struct { std::optional<uint32_t> flag; std::optional<std::wstring> wish, command, delegate; bool refuse;
                   std::optional<uint32_t> flag_after; bool retired; std::wstring line; } cases[] = {
        {0u, L"search-filters", legacy, L"", false, 0u, false, L""},
        {none, L"search-filters", none, none, false, 1u, false, L"Adopted the starting location flag: 1 (legacy override absent)"},
        {none, L"quick-pins", none, none, false, 0u, false, absent}, {none, L"Search-Filters", none, none, false, 0u, false, absent},
        {none, L"quick-pins", legacy, L"", false, 1u, true, L"Adopted the starting location flag: 1 (legacy override retired)"},
        {none, none, legacy, L"x", false, 0u, false, absent}, {none, none, legacy, none, false, 0u, false, absent},
        {none, none, legacy, none, true, none, false, L"Could not record the starting location flag: 5"},  // nothing deleted
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(to_utf8(c.wish.value_or(L"-") + L" " + c.command.value_or(L"-") + L" " + c.delegate.value_or(L"-")));
        fake_registry r;
        if (c.flag) plant_flag(r, *c.flag);
        if (c.wish) plant_text(r, SUITE_KEY, START_LOCATION_VALUE, *c.wish);
        if (c.command) plant_text(r, LEGACY_OVERRIDE_KEY, L"", *c.command);
        if (c.delegate) plant_text(r, LEGACY_OVERRIDE_KEY, L"DelegateExecute", *c.delegate);
        r.refuse_writes = c.refuse;
        recorded log;
        adopt_starting_location_flag(r, log.sink());
        EXPECT_EQ(as_dword(r.query(hive::current_user, SUITE_KEY, START_MONITOR_VALUE, 4)), c.flag_after);
        EXPECT_EQ(r.query(hive::current_user, LEGACY_OVERRIDE_KEY, L"", 1024).has_value(), c.command && !c.retired);
        EXPECT_EQ(r.query(hive::current_user, LEGACY_OVERRIDE_KEY, L"DelegateExecute", 1024).has_value(), c.delegate && !c.retired);
        EXPECT_EQ(log.lines, c.line.empty() ? std::vector<std::wstring>{} : std::vector<std::wstring>{L"[navigation-start] " + c.line});
    }
}

TEST(start_location, new_window_goes_to_the_chosen_node_only_from_a_default_page) {
    struct browser final : start_browser {
        std::optional<bool> busy_answer;
        window_location where;
        int32_t result;
        std::wstring browsed;
        std::optional<bool> busy() override { return busy_answer; }
        window_location location() override { return where; }
        int32_t browse_to(const wchar_t* name) override { return browsed = name, result; }
    };
    using enum window_location;
    const struct { std::optional<bool> busy; window_location where; std::optional<uint32_t> flag; const wchar_t* wish; int32_t result;
                   bool done; std::wstring browsed, line; } cases[] = {
        {std::nullopt, default_page, 1, L"", 0, false, L"", L""}, {true, default_page, 1, L"", 0, false, L"", L""},
        {false, not_ready, 1, L"", 0, false, L"", L""}, {false, desktop_root, 1, L"", 0, false, L"", L""},
        {false, elsewhere, 1, L"", 0, true, L"", L""}, {false, default_page, 0, L"", 0, true, L"", L""},
        {false, default_page, std::nullopt, L"quick-pins", 0, true, L"", L""},  // no flag: off
        {false, default_page, 1, L"quick-pins", 0, true, QUICK_PINS_LOCATION, L"Opened Quick pins in a new Explorer window"},
        {false, default_page, 2, L"anything", 1, true, SEARCH_FILTERS_LOCATION, L"Opened Search filters in a new Explorer window"},
        {false, default_page, 1, L"quick-pins", -2147467259, true, QUICK_PINS_LOCATION, L"Could not open Quick pins: 0x80004005"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(to_utf8(c.line) + " " + std::to_string(static_cast<int>(c.where)));
        fake_registry r;
        if (c.flag) plant_flag(r, *c.flag);
        plant_text(r, SUITE_KEY, START_LOCATION_VALUE, c.wish);
        browser b;
        b.busy_answer = c.busy, b.where = c.where, b.result = c.result;
        recorded log;
        EXPECT_EQ(navigate_new_window_if_at_default(b, r, log.sink()), c.done);
        EXPECT_EQ(b.browsed, c.browsed);
        EXPECT_EQ(log.lines, c.line.empty() ? std::vector<std::wstring>{} : std::vector<std::wstring>{L"[navigation-start] " + c.line});
    }
}

TEST(pending_windows, only_explorer_windows_of_explorer_exe_are_followed) {
    EXPECT_TRUE(is_explorer_window_class(L"CabinetWClass") && is_explorer_window_class(L"ExploreWClass"));
    EXPECT_FALSE(is_explorer_window_class(L"cabinetwclass") || is_explorer_window_class(L"#32770"));
    EXPECT_TRUE(is_explorer_image(L"C:\\Windows\\EXPLORER.EXE") && is_explorer_image(L"explorer.exe"));
    EXPECT_FALSE(is_explorer_image(L"C:\\Windows\\explorer.exe\\x.exe") || is_explorer_image(L"C:\\myexplorer.exe"));
}

TEST(pending_windows, prune_drops_gone_reused_and_old_windows) {
    pending_explorer_windows windows;
    note_window_created(windows, 1, 10, 1000);  // gone
    note_window_created(windows, 2, 20, 1000);  // reused by process 21
    note_window_created(windows, 3, 30, 1000);  // exactly at the limit: kept
    note_window_created(windows, 4, 40, 999);   // over the limit, display unfinished
    note_window_created(windows, 5, 50, 999);   // over the limit, display done, start not
    note_window_created(windows, 3, 31, 5000);  // seen again: the first entry stays
    windows[4].search_filters_done = true;
    windows[5].search_filters_done = windows[5].quick_pins_done = true;
    recorded log;
    prune_pending_windows(windows, 11000, 10000, [](window_id w) -> std::optional<uint32_t> {
        return w == 1 ? std::nullopt : std::optional<uint32_t>(w == 2 ? 21 : w * 10);
    }, log.sink());
    ASSERT_EQ(windows.size(), 1u);
    EXPECT_EQ(std::pair(windows.begin()->first, windows.begin()->second.process_id), std::pair(window_id{3}, 30u));
    EXPECT_EQ(log.lines, std::vector<std::wstring>{L"[navigation-display] Gave up on a new Explorer window (Search filters applied, Quick pins not applied)"});
}

namespace {
// Item 1 is the node, with children 2, 3 and 4; only 3 has subfolders.
struct fake_tree final : navigation_tree {
    std::set<item> refuse, not_sticking, unknown_kind, unknown_state;
    std::map<item, bool> expanded;
    std::optional<item> found = 1;
    bool loaded = true;
    std::optional<item> find_tree_item(const wchar_t*) override { return found; }
    bool set_expanded(item node, bool on) override {
        if (!not_sticking.count(node) && !refuse.count(node)) expanded[node] = on;
        return !refuse.count(node);
    }
    std::optional<bool> is_expanded(item node) override {
        return unknown_state.count(node) ? std::nullopt : std::optional<bool>(expanded[node]);
    }
    std::optional<item> first_child(item) override { return loaded ? std::optional<item>(2) : std::nullopt; }
    std::optional<item> next_sibling(item node) override { return node < 4 ? std::optional<item>(node + 1) : std::nullopt; }
    std::optional<bool> has_subfolders(item node) override {
        return unknown_kind.count(node) ? std::nullopt : std::optional<bool>(node == 3);
    }
};
}  // namespace

TEST(navigation_display, modes_collapse_or_expand_one_or_two_levels) {
    using enum navigation_display_mode;
    EXPECT_EQ(std::tuple(parse_navigation_display(L"collapsed"), parse_navigation_display(L"expand_second"),
                         parse_navigation_display(L"Collapsed")), std::tuple(collapsed, expand_second, expand_first));
    const struct { const char* label; navigation_display_mode mode; bool found; std::set<size_t> refuse, not_sticking;
                   bool loaded, done, node_expanded; } cases[] = {
        {"off", off, false, {}, {}, true, true, true}, {"not found", collapsed, false, {}, {}, true, false, true},
        {"collapsed", collapsed, true, {}, {}, true, true, false}, {"collapse refused", collapsed, true, {1}, {}, true, false, true},
        {"expand first", expand_first, true, {}, {}, true, true, true}, {"expand refused", expand_first, true, {1}, {}, true, false, false},
        {"second, children not loaded", expand_second, true, {}, {}, false, false, true}, {"second", expand_second, true, {}, {}, true, true, true},
        {"second, a child does not stick", expand_second, true, {}, {3}, true, false, true},
        {"second, leaves refuse", expand_second, true, {2, 4}, {}, true, true, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        fake_tree tree;
        tree.refuse = c.refuse, tree.not_sticking = c.not_sticking, tree.loaded = c.loaded, tree.expanded[1] = c.mode != expand_first;
        if (!c.found) tree.found.reset();
        recorded log;
        EXPECT_EQ(apply_navigation_display(tree, SEARCH_FILTERS_NODE, c.mode, log.sink()), c.done);
        EXPECT_EQ(tree.expanded[1], c.node_expanded);
        EXPECT_EQ(log.lines, std::vector<std::wstring>(c.mode == expand_second && c.done,
                                                       L"[navigation-display] Expanded ::{249AE234-08DF-4686-AAF3-5D80A15493BE} two levels (3 children)"));
    }
    // What the tree cannot tell: a child of unknown kind is a leaf (not even tried, so its refusal does not
    // count), and an unknown state is not expanded.
    for (const bool kind_unknown : {true, false}) {
        fake_tree tree;
        if (kind_unknown) tree.unknown_kind = tree.refuse = {3};
        else tree.unknown_state = {3};
        recorded log;
        EXPECT_EQ(apply_navigation_display(tree, SEARCH_FILTERS_NODE, navigation_display_mode::expand_second, log.sink()),
                  kind_unknown);
    }
}

TEST(navigation_display, a_pass_runs_each_unfinished_step_and_stores_what_is_left) {
    using enum navigation_display_mode;
    fake_tree tree;
    const struct { const char* label; pending_explorer_window before; pass_settings settings; bool navigated, has_tree;
                   int navigations, lookups; bool start, filters, pins; } cases[] = {
        {"all to do", {}, {true, expand_first, off}, true, true, 1, 1, true, true, true},
        {"start off", {}, {false, collapsed, collapsed}, false, true, 0, 1, true, true, true},
        {"not at default yet", {}, {true, off, off}, false, true, 1, 1, false, true, true},
        {"one node left", {1, 0, true, true, false}, {true, off, off}, true, true, 0, 1, true, true, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        int navigations = 0, lookups = 0;
        const auto after = service_window(c.before, c.settings, [&] { ++navigations; return c.navigated; },
                                          [&]() -> navigation_tree* { ++lookups; return c.has_tree ? &tree : nullptr; }, {});
        EXPECT_EQ(std::tuple(navigations, lookups, after.start_done, after.search_filters_done, after.quick_pins_done),
                  std::tuple(c.navigations, c.lookups, c.start, c.filters, c.pins));
    }
    pending_explorer_windows windows{{7, {70, 5}}, {8, {80, 5}}};
    store_window_flags(windows, 7, {0, 0, true, false, true});
    store_window_flags(windows, 8, {0, 0, true, true, true});
    store_window_flags(windows, 9, {0, 0, true, false, false});
    ASSERT_EQ(windows.size(), 1u) << "a finished window leaves; a gone one is not brought back";
    const auto& w = windows[7];
    EXPECT_EQ(std::tuple(w.process_id, w.start_done, w.search_filters_done, w.quick_pins_done), std::tuple(70u, true, false, true));
}
