#include <windows.h>

#include <shlobj.h>

#include "index_watch/namespace_icon_win32.h"

#include "logging/log.h"
#include "platform/paths_win32.h"
#include "platform/unique_resource_win32.h"
#include "process/background_task.h"
#include "settings/high_level_settings.h"
#include "tray_messages.h"

#include <filesystem>
#include <memory>

namespace index_watch {

namespace {

// Writes one REG_SZ value under HKCU `key`, creating the key; "" on success, else the failing step's
// message. Both keys go to the per-user classes: the machine's registration stays untouched.
const char* write_string(const std::wstring& key, const wchar_t* name, const std::wstring& data, const char* open_error,
                         const char* write_error, LSTATUS& status) {
    HKEY opened = nullptr;
    status = RegCreateKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr);
    if (status != ERROR_SUCCESS) return open_error;
    const unique_hkey owned(opened);
    status = RegSetValueExW(opened, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                            static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t)));
    return status == ERROR_SUCCESS ? "" : write_error;
}

// False when the registry could not be made right; a failed redraw after it is no reason to retry.
bool apply_namespace_icon(const icon_selection& selection) {
    const std::wstring icon = (module_folder() / L"Content" / L"Icons" / selection.icon_file).wstring();
    std::error_code unreadable;  // counts as missing
    if (!std::filesystem::exists(icon, unreadable)) {
        logging::log(log_severity::error, L"Namespace root status icon does not exist: {}", icon);
        return false;
    }
    LSTATUS status = ERROR_SUCCESS;
    const char* failed = write_string(NAMESPACE_CLASS_KEY, L"InfoTip", selection.tip,
                                      "Failed to open the per-user namespace class key: {}",
                                      "Failed to update the namespace InfoTip value: {}", status);
    if (!*failed) {
        failed = write_string(std::wstring(NAMESPACE_CLASS_KEY) + L"\\DefaultIcon", nullptr, icon + L",0",
                              "Failed to open the per-user namespace DefaultIcon key: {}",
                              "Failed to update the namespace DefaultIcon value: {}", status);
    }
    if (*failed) {
        logging::log(log_severity::error, fmt::runtime(failed), status);
        return false;
    }
    PIDLIST_ABSOLUTE root = nullptr;
    const HRESULT parsed =
        SHParseDisplayName(L"::{249AE234-08DF-4686-AAF3-5D80A15493BE}", nullptr, &root, 0, nullptr);
    if (FAILED(parsed) || !root) {
        logging::log(log_severity::error, "Failed to parse the namespace root PIDL for its icon refresh: 0x{:08X}",
                     static_cast<uint32_t>(parsed));
        return true;
    }
    SHChangeNotify(SHCNE_UPDATEITEM, SHCNF_IDLIST | SHCNF_FLUSHNOWAIT, root, nullptr);
    CoTaskMemFree(root);
    return true;
}

}  // namespace

bool namespace_display_on() noexcept {
    // One settings file for the process, built on first use, on the window thread only.
    static std::unique_ptr<high_level_settings::settings_file> settings;
    try {
        if (!settings) settings = std::make_unique<high_level_settings::settings_file>();
        return namespace_display_on(*settings);
    } catch (...) {
        return true;
    }
}

void start_namespace_icon_task(HWND window, icon_selection selection) {
    run_background_task(L"update_namespace_root_icon", [window, selection = std::move(selection)] {
        if (!apply_namespace_icon(selection)) PostMessageW(window, WM_NAMESPACE_ICON_RETRY, 0, 0);
    });
}

}  // namespace index_watch
