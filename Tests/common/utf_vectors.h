#pragma once

#include <string_view>

// Text that both conversions must round-trip exactly: ASCII, Latin, CJK, an emoji outside the
// basic plane and the last one, a control character and an embedded NUL.
struct utf_vector {
    std::string_view utf8;
    std::wstring_view wide;
};

inline constexpr utf_vector utf_round_trip_vectors[] = {
    {"", L""},
    {"System Tray", L"System Tray"},
    {"Gr\xC3\xBC\xC3\x9F" "e \xC3\xA9t\xC3\xA9", L"Gr\u00FC\u00DFe \u00E9t\u00E9"},
    {"\xE7\xB4\xA2\xE5\xBC\x95", L"\u7D22\u5F15"},
    {"mic \xF0\x9F\x8E\x99 on", L"mic \U0001F399 on"},
    {"\xF4\x8F\xBF\xBF", L"\U0010FFFF"},  // the last code point: a four-byte lead of F4
    {"tab\there", L"tab\there"},
    {std::string_view("a\0b", 3), std::wstring_view(L"a\0b", 3)},
};
