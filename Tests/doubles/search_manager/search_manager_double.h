#pragma once

// Where a test sets the counts that the search-manager double reports, under HKEY_CURRENT_USER: the
// DWORD values "ItemsToIndex" (read as signed) and "TotalItems", read again on every call.
constexpr wchar_t SEARCH_MANAGER_DOUBLE_KEY[] = L"Software\\Kestrane\\Veldrake Tests\\Search manager double";
