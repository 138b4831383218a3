#pragma once

#include <string_view>

// Whether `text` matches `pattern` as a whole, where `*` takes any run of characters (also none) and
// other characters compare equal after folding A to Z to lower case, and nothing else is folded.
bool wildcard_match(std::wstring_view pattern, std::wstring_view text) noexcept;
