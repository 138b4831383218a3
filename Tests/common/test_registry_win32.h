#pragma once

#include <windows.h>

#include <cstdint>
#include <stdexcept>
#include <string>

// Registry access for tests: writes that the product itself never makes (HKLM, deletions).
namespace test_registry {

inline void set_value(HKEY root, const std::wstring& key, const wchar_t* name, DWORD type, const void* data, size_t size) {
    const LSTATUS status = RegSetKeyValueW(root, key.c_str(), name, type, data, static_cast<DWORD>(size));
    if (status != ERROR_SUCCESS) throw std::runtime_error("RegSetKeyValueW failed with " + std::to_string(status));
}
inline void set_dword(HKEY root, const std::wstring& key, const wchar_t* name, uint32_t value) {
    set_value(root, key, name, REG_DWORD, &value, sizeof(value));
}
inline void set_string(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    set_value(root, key, name, REG_SZ, value.c_str(), (value.size() + 1) * sizeof(wchar_t));
}

// A string value, or "" when there is none.
inline std::wstring get_string(HKEY root, const std::wstring& key, const wchar_t* name) {
    wchar_t text[1024] = {};
    DWORD size = sizeof(text);
    RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
}

inline void delete_value(HKEY root, const std::wstring& key, const wchar_t* name) { RegDeleteKeyValueW(root, key.c_str(), name); }
inline void delete_tree(HKEY root, const std::wstring& key) { RegDeleteTreeW(root, key.c_str()); }

}  // namespace test_registry
