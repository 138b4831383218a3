#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

// Registry access for tests: writes that the product itself never makes (HKLM, deletions).
namespace test_registry {

void set_dword(HKEY root, const std::wstring& key, const wchar_t* name, uint32_t value);
void set_qword(HKEY root, const std::wstring& key, const wchar_t* name, uint64_t value);
void set_string(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& value);
std::optional<std::wstring> get_string(HKEY root, const std::wstring& key, const wchar_t* name);
void delete_value(HKEY root, const std::wstring& key, const wchar_t* name);
void delete_tree(HKEY root, const std::wstring& key);

}  // namespace test_registry
