#include "process/wildcard.h"

namespace {

wchar_t fold(wchar_t c) noexcept { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

}  // namespace

// Linear backtracking: on a mismatch only the last star takes one character more, since an earlier
// star can gain nothing that the last one cannot.
bool wildcard_match(std::wstring_view pattern, std::wstring_view text) noexcept {
    size_t p = 0, t = 0;
    size_t star = std::wstring_view::npos, star_text = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == L'*') {
            star = p++;
            star_text = t;
        } else if (p < pattern.size() && fold(pattern[p]) == fold(text[t])) {
            ++p;
            ++t;
        } else if (star != std::wstring_view::npos) {
            p = star + 1;
            t = ++star_text;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == L'*') ++p;
    return p == pattern.size();
}
