#include <windows.h>

#include <servprov.h>
#include <shlguid.h>
#include <shlobj.h>

#include "explorer/explorer_window_win32.h"

#include <memory>

namespace explorer {

namespace {

struct pidl_free {
    void operator()(ITEMIDLIST* list) const noexcept { CoTaskMemFree(list); }
};
using unique_pidl = std::unique_ptr<ITEMIDLIST, pidl_free>;

unique_pidl parse(const wchar_t* name) {
    PIDLIST_ABSOLUTE list = nullptr;
    if (FAILED(SHParseDisplayName(name, nullptr, &list, 0, nullptr))) return nullptr;
    return unique_pidl(list);
}

// A name that cannot be parsed simply does not match.
bool shows(PCIDLIST_ABSOLUTE list, const wchar_t* name) {
    const unique_pidl other = parse(name);
    return other && ILIsEqual(list, other.get());
}

bool same_item(IShellItem* item, PCIDLIST_ABSOLUTE sought) {
    PIDLIST_ABSOLUTE list = nullptr;
    if (FAILED(SHGetIDListFromObject(item, &list)) || !list) return false;
    const unique_pidl owned(list);
    return ILIsEqual(list, sought);
}

}  // namespace

std::optional<bool> window_browser::busy() {
    VARIANT_BOOL busy = VARIANT_TRUE;
    if (FAILED(browser_->get_Busy(&busy))) return std::nullopt;
    return busy != VARIANT_FALSE;
}

com_ptr<IShellBrowser> window_browser::shell_browser() {
    com_ptr<IShellBrowser> shell;
    const auto services = browser_.try_query<IServiceProvider>();
    if (services) services->QueryService(SID_STopLevelBrowser, IID_IShellBrowser, shell.put_void());
    return shell;
}

window_location window_browser::location() {
    const auto shell = shell_browser();
    if (!shell) return window_location::not_ready;
    com_ptr<IShellView> view;
    if (FAILED(shell->QueryActiveShellView(view.put())) || !view) return window_location::not_ready;
    const auto folder_view = view.try_query<IFolderView>();
    com_ptr<IPersistFolder2> folder;
    if (!folder_view || FAILED(folder_view->GetFolder(IID_IPersistFolder2, folder.put_void())) || !folder) {
        return window_location::not_ready;
    }
    PIDLIST_ABSOLUTE current = nullptr;
    if (FAILED(folder->GetCurFolder(&current)) || !current) return window_location::not_ready;
    const unique_pidl owned(current);
    if (ILIsEmpty(current)) return window_location::desktop_root;
    return shows(current, HOME_LOCATION) || shows(current, QUICK_ACCESS_LOCATION) ? window_location::default_page
                                                                                  : window_location::elsewhere;
}

int32_t window_browser::browse_to(const wchar_t* parsing_name) {
    PIDLIST_ABSOLUTE target = nullptr;
    const HRESULT parsed = SHParseDisplayName(parsing_name, nullptr, &target, 0, nullptr);
    if (FAILED(parsed)) return parsed;
    const unique_pidl owned(target);
    const auto shell = shell_browser();
    if (!shell) return E_NOINTERFACE;
    // SBSP_SAMEBROWSER | SBSP_ACTIVATE_NOFOCUS | SBSP_WRITENOHISTORY | SBSP_REDIRECT
    return shell->BrowseObject(target, 0x48080001);
}

com_ptr<INameSpaceTreeControl> get_namespace_tree_control(IWebBrowser2& browser) {
    com_ptr<INameSpaceTreeControl> tree;
    com_ptr<IServiceProvider> services;
    com_ptr<IServiceProvider> top;
    if (SUCCEEDED(browser.QueryInterface(IID_IServiceProvider, services.put_void())) && services &&
        SUCCEEDED(services->QueryService(SID_STopLevelBrowser, IID_IServiceProvider, top.put_void())) && top) {
        top->QueryService(IID_INameSpaceTreeControl, IID_INameSpaceTreeControl, tree.put_void());
    }
    return tree;
}

std::optional<navigation_tree::item> window_tree::keep(com_ptr<IShellItem> shell_item) {
    if (!shell_item) return std::nullopt;
    items_.push_back(std::move(shell_item));
    return items_.size() - 1;
}

std::optional<navigation_tree::item> window_tree::find_tree_item(const wchar_t* parsing_name) {
    const unique_pidl sought = parse(parsing_name);
    if (!sought) return std::nullopt;
    com_ptr<IShellItemArray> roots;
    DWORD count = 0;
    if (FAILED(tree_->GetRootItems(roots.put())) || !roots || FAILED(roots->GetCount(&count))) return std::nullopt;
    for (DWORD index = 0; index < count; ++index) {
        com_ptr<IShellItem> root;
        if (FAILED(roots->GetItemAt(index, root.put())) || !root) continue;
        if (same_item(root.get(), sought.get())) return keep(root);
        com_ptr<IShellItem> child;
        HRESULT step = tree_->GetNextItem(root.get(), NSTCGNI_CHILD, child.put());
        while (SUCCEEDED(step) && child) {
            if (same_item(child.get(), sought.get())) return keep(child);
            com_ptr<IShellItem> sibling;
            step = tree_->GetNextItem(child.get(), NSTCGNI_NEXT, sibling.put());
            child = sibling;
        }
    }
    return std::nullopt;
}

bool window_tree::set_expanded(item node, bool expanded) {
    return SUCCEEDED(tree_->SetItemState(items_[node].get(), NSTCIS_EXPANDED, expanded ? NSTCIS_EXPANDED : NSTCIS_NONE));
}

std::optional<bool> window_tree::is_expanded(item node) {
    NSTCITEMSTATE state = NSTCIS_NONE;
    if (FAILED(tree_->GetItemState(items_[node].get(), NSTCIS_EXPANDED, &state))) return std::nullopt;
    return (state & NSTCIS_EXPANDED) != 0;
}

std::optional<navigation_tree::item> window_tree::next(item node, NSTCGNI kind) {
    com_ptr<IShellItem> found;
    if (FAILED(tree_->GetNextItem(items_[node].get(), kind, found.put()))) return std::nullopt;
    return keep(found);
}

std::optional<navigation_tree::item> window_tree::first_child(item node) { return next(node, NSTCGNI_CHILD); }
std::optional<navigation_tree::item> window_tree::next_sibling(item node) { return next(node, NSTCGNI_NEXT); }

std::optional<bool> window_tree::has_subfolders(item node) {
    SFGAOF attributes = 0;
    if (FAILED(items_[node]->GetAttributes(SFGAO_HASSUBFOLDER, &attributes))) return std::nullopt;
    return (attributes & SFGAO_HASSUBFOLDER) != 0;
}

}  // namespace explorer
