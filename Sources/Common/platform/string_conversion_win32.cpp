#include <windows.h>

#include "platform/string_conversion.h"

#include <climits>

std::wstring to_wide(std::string_view utf8) {
    if (utf8.empty() || utf8.size() > INT_MAX) return {};
    const int size = static_cast<int>(utf8.size());
    const int needed = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    if (needed <= 0) return {};
    std::wstring out(static_cast<size_t>(needed), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, out.data(), needed);
    return out;
}

std::string to_utf8(std::wstring_view wide) {
    if (wide.empty() || wide.size() > INT_MAX) return {};
    const int size = static_cast<int>(wide.size());
    const int needed = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    if (needed <= 0) return {};
    std::string out(static_cast<size_t>(needed), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, out.data(), needed, nullptr, nullptr);
    return out;
}
