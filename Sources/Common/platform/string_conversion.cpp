#include "platform/string_conversion.h"

#include <cstdint>

namespace portable_utf {
namespace {

constexpr char32_t replacement = 0xFFFD;

void append_wide(std::wstring& out, char32_t c) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (c >= 0x10000) {
            c -= 0x10000;
            out.push_back(static_cast<wchar_t>(0xD800 + (c >> 10)));
            out.push_back(static_cast<wchar_t>(0xDC00 + (c & 0x3FF)));
            return;
        }
    }
    out.push_back(static_cast<wchar_t>(c));
}

void append_utf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
}

bool is_surrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

}  // namespace

// A malformed sequence becomes one U+FFFD per maximal ill-formed subpart, as the platform does.
std::wstring to_wide(std::string_view utf8) {
    std::wstring out;
    out.reserve(utf8.size());
    size_t i = 0;
    while (i < utf8.size()) {
        const auto lead = static_cast<uint8_t>(utf8[i]);
        if (lead < 0x80) {
            out.push_back(static_cast<wchar_t>(lead));
            ++i;
            continue;
        }
        int length = 0;
        char32_t c = 0;
        uint8_t low = 0x80, high = 0xBF;  // the bounds of the second byte
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2, c = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3, c = lead & 0x0F;
            if (lead == 0xE0) low = 0xA0;
            if (lead == 0xED) high = 0x9F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4, c = lead & 0x07;
            if (lead == 0xF0) low = 0x90;
            if (lead == 0xF4) high = 0x8F;
        } else {
            out.push_back(static_cast<wchar_t>(replacement));
            ++i;
            continue;
        }
        size_t j = i + 1;
        bool ok = true;
        for (int k = 1; k < length; ++k, ++j) {
            if (j >= utf8.size()) {
                ok = false;
                break;
            }
            const auto b = static_cast<uint8_t>(utf8[j]);
            const uint8_t lo = k == 1 ? low : 0x80;
            const uint8_t hi = k == 1 ? high : 0xBF;
            if (b < lo || b > hi) {
                ok = false;
                break;
            }
            c = (c << 6) | (b & 0x3F);
        }
        append_wide(out, ok ? c : replacement);
        i = j;
    }
    return out;
}

std::string to_utf8(std::wstring_view wide) {
    std::string out;
    out.reserve(wide.size());
    for (size_t i = 0; i < wide.size(); ++i) {
        auto c = static_cast<char32_t>(wide[i]);
        if constexpr (sizeof(wchar_t) == 2) {
            if (c >= 0xD800 && c <= 0xDBFF && i + 1 < wide.size()) {
                const auto next = static_cast<char32_t>(wide[i + 1]);
                if (next >= 0xDC00 && next <= 0xDFFF) {
                    append_utf8(out, 0x10000 + ((c - 0xD800) << 10) + (next - 0xDC00));
                    ++i;
                    continue;
                }
            }
        }
        append_utf8(out, is_surrogate(c) || c > 0x10FFFF ? replacement : c);
    }
    return out;
}

}  // namespace portable_utf
