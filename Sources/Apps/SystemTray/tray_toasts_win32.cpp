#include <windows.h>

#include <objbase.h>

#include "tray_toasts_win32.h"

#include "index_watch/add_to_index_win32.h"
#include "process/settings_app_win32.h"
#include "toasts/toast_utilities_win32.h"

toast_platform tray_toast_platform() {
    toast_platform platform;
    // The result is not looked at: the thread is new, so it cannot be in another apartment already.
    platform.thread_begin = [] { CoInitialize(nullptr); };
    platform.thread_end = [] { CoUninitialize(); };
    platform.show = [](const toast_entry& entry, std::function<bool()> should_continue) {
        toast_utilities::show_toast(entry.icon_path, entry.tooltip, entry.title, entry.text, entry.on_click,
                                    std::move(should_continue));
    };
    platform.open_settings_tab = [](const std::string& tab) { settings_app::open_settings_tab_direct(tab); };
    platform.add_to_index = [](const std::vector<std::wstring>& paths, const std::wstring& subject) {
        launch_add_to_index_helper(paths, subject);
    };
    return platform;
}
