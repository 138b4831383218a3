#include "process/wildcard.h"

#include <cstdint>
#include <cstdlib>
#include <regex>
#include <string>

// The matcher against a regular expression built from the same pattern: a star is ".*", a letter
// either case, anything else itself. Inputs are kept to a small alphabet so that matches happen.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const char alphabet[] = "aAbB*.";
    const size_t split = size ? data[0] % (size + 1) : 0;
    std::wstring pattern, text;
    std::string expression;
    for (size_t i = 1; i < size && i < 24; ++i) {
        const char c = alphabet[data[i] % 6];
        if (i <= split) {
            pattern += static_cast<wchar_t>(c);
            if (c == '*') expression += ".*";
            else if (c == '.') expression += "\\.";
            else expression += std::string("[") + static_cast<char>(c | 0x20) + static_cast<char>(c & ~0x20) + "]";
        } else {
            text += static_cast<wchar_t>(c);
        }
    }
    const std::string narrow(text.begin(), text.end());
    if (wildcard_match(pattern, text) != std::regex_match(narrow, std::regex(expression))) std::abort();
    return 0;
}
