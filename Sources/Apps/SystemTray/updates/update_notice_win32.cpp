#include "updates/update_notice_win32.h"

#include "platform/unique_resource_win32.h"
#include "updates/update_download.h"
#include "updates/version_check.h"

#include <string>

namespace updates {

namespace {

constexpr const wchar_t* NOTICE_KEY = L"Software\\Kestrane\\Veldrake";
constexpr const wchar_t* NOTICE_VALUE = L"LastInstalledVersion";
constexpr DWORD READ_BUFFER_BYTES = 128;

std::wstring recorded_version() {
    unique_hkey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, NOTICE_KEY, 0, KEY_READ, key.put()) != ERROR_SUCCESS) return {};
    wchar_t buffer[READ_BUFFER_BYTES / sizeof(wchar_t)] = {};
    DWORD bytes = READ_BUFFER_BYTES;
    // A text too long for the buffer fails to read and counts as none.
    if (RegQueryValueExW(key.get(), NOTICE_VALUE, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &bytes) !=
        ERROR_SUCCESS) {
        return {};
    }
    return std::wstring(buffer, wcsnlen(buffer, READ_BUFFER_BYTES / sizeof(wchar_t)));
}

}  // namespace

bool note_installed_version() {
    const std::wstring current = current_version_string();
    const std::wstring recorded = recorded_version();
    unique_hkey key;
    // The record is rewritten at every start, so the notice is offered once only. Failures are silent.
    if (RegCreateKeyExW(HKEY_CURRENT_USER, NOTICE_KEY, 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr) ==
        ERROR_SUCCESS) {
        RegSetValueExW(key.get(), NOTICE_VALUE, 0, REG_SZ, reinterpret_cast<const BYTE*>(current.c_str()),
                       static_cast<DWORD>((current.size() + 1) * sizeof(wchar_t)));
    }
    return installed_version_changed(recorded, current);
}

}  // namespace updates
