#include <windows.h>

#include <shlwapi.h>

#include "explorer/registry_port_win32.h"

#include "platform/unique_resource_win32.h"

namespace explorer {

namespace {

// The tray is a 64-bit program, so it sees the 64-bit view without KEY_WOW64_64KEY.
unique_hkey open_key(HKEY root, const std::wstring& key, REGSAM rights) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, rights, &opened) != ERROR_SUCCESS) return unique_hkey();
    return unique_hkey(opened);
}

using enumerate_fn = LSTATUS (*)(HKEY, DWORD, wchar_t*, DWORD*);

std::optional<std::vector<std::wstring>> names_of(HKEY root, const std::wstring& key, enumerate_fn enumerate) {
    const unique_hkey opened = open_key(root, key, KEY_READ);
    if (!opened) return std::nullopt;
    std::vector<std::wstring> names;
    for (DWORD index = 0;; ++index) {
        wchar_t name[256] = {};
        DWORD length = 256;
        if (enumerate(opened.get(), index, name, &length) != ERROR_SUCCESS) break;
        names.emplace_back(name, length);
    }
    return names;
}

LSTATUS enumerate_value(HKEY key, DWORD index, wchar_t* name, DWORD* length) {
    return RegEnumValueW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
}
LSTATUS enumerate_subkey(HKEY key, DWORD index, wchar_t* name, DWORD* length) {
    return RegEnumKeyExW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
}

bool set_value(HKEY root, const std::wstring& key, const std::wstring& name, DWORD type, const void* data, size_t size) {
    const unique_hkey opened = open_key(root, key, KEY_SET_VALUE);
    return opened && RegSetValueExW(opened.get(), name.c_str(), 0, type, static_cast<const BYTE*>(data),
                                    static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

}  // namespace

std::optional<raw_value> platform_registry::query(hive root, const std::wstring& key, const std::wstring& name,
                                                  uint32_t max_bytes) {
    const unique_hkey opened = open_key(root_of(root), key, KEY_READ);
    if (!opened) return std::nullopt;
    raw_value value;
    value.bytes.resize(max_bytes);
    DWORD type = 0;
    DWORD size = max_bytes;
    if (RegQueryValueExW(opened.get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(value.bytes.data()),
                         &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    value.type = type;
    value.bytes.resize(size);
    return value;
}

std::optional<std::vector<std::wstring>> platform_registry::value_names(hive root, const std::wstring& key) {
    return names_of(root_of(root), key, enumerate_value);
}

std::optional<std::vector<std::wstring>> platform_registry::subkey_names(hive root, const std::wstring& key) {
    return names_of(root_of(root), key, enumerate_subkey);
}

uint32_t platform_registry::open_for_write(const std::wstring& key, bool create) {
    HKEY opened = nullptr;
    const LSTATUS status =
        create ? RegCreateKeyExW(root_of(hive::current_user), key.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr,
                                 &opened, nullptr)
               : RegOpenKeyExW(root_of(hive::current_user), key.c_str(), 0, KEY_READ | KEY_WRITE, &opened);
    const unique_hkey owned(opened);
    return static_cast<uint32_t>(status);
}

bool platform_registry::set_string(const std::wstring& key, const std::wstring& name, const std::wstring& data) {
    return set_value(root_of(hive::current_user), key, name, REG_SZ, data.c_str(), (data.size() + 1) * sizeof(wchar_t));
}

bool platform_registry::set_dword(const std::wstring& key, const std::wstring& name, uint32_t data) {
    const DWORD value = data;
    return set_value(root_of(hive::current_user), key, name, REG_DWORD, &value, sizeof(value));
}

bool platform_registry::delete_value(const std::wstring& key, const std::wstring& name) {
    return RegDeleteKeyValueW(root_of(hive::current_user), key.c_str(), name.c_str()) == ERROR_SUCCESS;
}

std::optional<std::wstring> platform_registry::association_prog_id(const std::wstring& extension) {
    if (!ask_shell_) return std::nullopt;
    DWORD length = 0;
    // The first call asks for the length; E_POINTER is how some versions say so.
    const HRESULT sized = AssocQueryStringW(ASSOCF_NONE, ASSOCSTR_PROGID, extension.c_str(), nullptr, nullptr, &length);
    if ((sized != S_OK && sized != S_FALSE && sized != E_POINTER) || length == 0) return std::nullopt;
    std::wstring text(length, L'\0');
    if (AssocQueryStringW(ASSOCF_NONE, ASSOCSTR_PROGID, extension.c_str(), nullptr, text.data(), &length) != S_OK) {
        return std::nullopt;
    }
    text.resize(wcsnlen(text.c_str(), text.size()));
    return text;
}

}  // namespace explorer
