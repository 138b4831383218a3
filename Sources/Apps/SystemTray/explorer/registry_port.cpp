#include "explorer/registry_port.h"

#include <cwctype>

namespace explorer {

std::string string_bytes(std::wstring_view text) {
    std::string bytes;
    for (const wchar_t c : text) {
        bytes += static_cast<char>(static_cast<uint32_t>(c) & 0xFF);
        bytes += static_cast<char>((static_cast<uint32_t>(c) >> 8) & 0xFF);
    }
    bytes.append(2, '\0');
    return bytes;
}

std::optional<std::wstring> as_string(const std::optional<raw_value>& value) {
    if (!value || (value->type != REG_SZ_TYPE && value->type != REG_EXPAND_SZ_TYPE)) return std::nullopt;
    const std::string& b = value->bytes;
    if (b.empty()) return std::wstring();
    if (b.size() % 2 != 0 || b[b.size() - 2] != '\0' || b[b.size() - 1] != '\0') return std::nullopt;
    std::wstring text;
    for (size_t i = 0; i + 2 < b.size(); i += 2) {
        text += static_cast<wchar_t>(static_cast<uint8_t>(b[i]) | (static_cast<uint8_t>(b[i + 1]) << 8));
    }
    return text;
}

std::optional<uint32_t> as_dword(const std::optional<raw_value>& value) {
    if (!value || value->type != REG_DWORD_TYPE || value->bytes.size() != 4) return std::nullopt;
    uint32_t number = 0;
    for (size_t i = 4; i-- > 0;) number = (number << 8) | static_cast<uint8_t>(value->bytes[i]);
    return number;
}

std::wstring fold_case(std::wstring_view text) {
    std::wstring folded(text);
    for (wchar_t& c : folded) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    return folded;
}

bool equal_folded(std::wstring_view a, std::wstring_view b) { return fold_case(a) == fold_case(b); }

std::wstring with_leading_dot(std::wstring_view extension) {
    if (!extension.empty() && extension.front() == L'.') return std::wstring(extension);
    return L"." + std::wstring(extension);
}

}  // namespace explorer
