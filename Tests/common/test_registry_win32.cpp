#include "common/test_registry_win32.h"

#include <stdexcept>

namespace test_registry {

namespace {

void set_value(HKEY root, const std::wstring& key, const wchar_t* name, DWORD type, const void* data, DWORD size) {
    const LSTATUS status = RegSetKeyValueW(root, key.c_str(), name, type, data, size);
    if (status != ERROR_SUCCESS) throw std::runtime_error("RegSetKeyValueW failed with " + std::to_string(status));
}

}  // namespace

void set_dword(HKEY root, const std::wstring& key, const wchar_t* name, uint32_t value) {
    set_value(root, key, name, REG_DWORD, &value, sizeof(value));
}

void set_qword(HKEY root, const std::wstring& key, const wchar_t* name, uint64_t value) {
    set_value(root, key, name, REG_QWORD, &value, sizeof(value));
}

void set_string(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    set_value(root, key, name, REG_SZ, value.c_str(), static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

std::optional<std::wstring> get_string(HKEY root, const std::wstring& key, const wchar_t* name) {
    DWORD size = 0;
    if (RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, nullptr, &size) != ERROR_SUCCESS) return std::nullopt;
    std::wstring value(size / sizeof(wchar_t), L'\0');
    if (RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, value.data(), &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    value.resize(wcslen(value.c_str()));
    return value;
}

void delete_value(HKEY root, const std::wstring& key, const wchar_t* name) { RegDeleteKeyValueW(root, key.c_str(), name); }

void delete_tree(HKEY root, const std::wstring& key) { RegDeleteTreeW(root, key.c_str()); }

}  // namespace test_registry
