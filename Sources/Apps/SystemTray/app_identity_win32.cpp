#include <windows.h>

#include <shobjidl.h>

#include "app_identity_win32.h"
#include "platform/sdk_gaps_win32.h"
#include "platform/unique_resource_win32.h"
#include "tray_messages.h"

namespace {

void set_string(HKEY key, const wchar_t* name, const std::wstring& value) {
    RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                   static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

}  // namespace

void register_app_user_model_display(const std::wstring& icon_path) {
    const std::wstring key_path = std::wstring(L"Software\\Classes\\AppUserModelId\\") + APP_USER_MODEL_ID;
    unique_hkey key;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, key_path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr) !=
        ERROR_SUCCESS) {
        return;
    }
    set_string(key.get(), L"DisplayName", L"Veldrake");
    if (!icon_path.empty()) set_string(key.get(), L"IconUri", icon_path);
}

void set_process_app_user_model_id() {
    // A packaged process takes its identity from its package.
    if (sdk::has_no_package()) SetCurrentProcessExplicitAppUserModelID(APP_USER_MODEL_ID);
}
