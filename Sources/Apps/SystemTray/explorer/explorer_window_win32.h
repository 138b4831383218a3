#pragma once

#include <windows.h>

#include <exdisp.h>
#include <shobjidl.h>

#include "explorer/navigation_display.h"
#include "explorer/start_location.h"
#include "platform/com_ptr_win32.h"

#include <vector>

// One open Explorer window's browser and navigation pane, for the start monitor's pass. Every object
// is made and released within the pass.
namespace explorer {

class window_browser final : public start_browser {
public:
    explicit window_browser(com_ptr<IWebBrowser2> browser) : browser_(std::move(browser)) {}
    std::optional<bool> busy() override;
    window_location location() override;
    int32_t browse_to(const wchar_t* parsing_name) override;

private:
    com_ptr<IShellBrowser> shell_browser();
    com_ptr<IWebBrowser2> browser_;
};

// The window's INameSpaceTreeControl, or nothing while the pane is not ready (or there is none).
com_ptr<INameSpaceTreeControl> get_namespace_tree_control(IWebBrowser2& browser);

class window_tree final : public navigation_tree {
public:
    explicit window_tree(com_ptr<INameSpaceTreeControl> tree) : tree_(std::move(tree)) {}
    std::optional<item> find_tree_item(const wchar_t* parsing_name) override;
    bool set_expanded(item node, bool expanded) override;
    std::optional<bool> is_expanded(item node) override;
    std::optional<item> first_child(item node) override;
    std::optional<item> next_sibling(item node) override;
    std::optional<bool> has_subfolders(item node) override;

private:
    std::optional<item> keep(com_ptr<IShellItem> shell_item);
    std::optional<item> next(item node, NSTCGNI kind);

    com_ptr<INameSpaceTreeControl> tree_;
    std::vector<com_ptr<IShellItem>> items_;
};

}  // namespace explorer
