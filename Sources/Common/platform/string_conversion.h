#pragma once

#include <string>
#include <string_view>

// UTF-8 <-> wide text. On Windows the platform converts (invalid input becomes U+FFFD); the host uses
// the portable implementation, which follows the same rules and is tested on the same vectors.
std::wstring to_wide(std::string_view utf8);
std::string to_utf8(std::wstring_view wide);

namespace portable_utf {
// Wide means UTF-16 where wchar_t has 16 bits and UTF-32 where it has 32.
std::wstring to_wide(std::string_view utf8);
std::string to_utf8(std::wstring_view wide);
}  // namespace portable_utf
