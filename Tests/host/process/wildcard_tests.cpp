#include "platform/string_conversion.h"
#include "process/wildcard.h"

#include <gtest/gtest.h>

TEST(wildcard, matches_whole_names_with_stars_folding_only_a_to_z) {
    const struct { const wchar_t *pattern, *text; bool match; } cases[] = {
        {L"Veldrake.Vantry*.dll", L"VELDRAKE.VANTRY.2.1.DLL", true},
        {L"Veldrake.Vantry*.dll", L"Veldrake.Vantry.dll.bak", false},
        {L"ZIP*", L"zip.dll", true},
        {L"*ab", L"aaab", true},         // the star gives back after a partial match
        {L"*a*a*a*b", L"aaaaaaaaaaaaaaaaaaaaaaa", false},  // backtracking stays linear in practice
        {L"\u00C9*", L"\u00E9t\u00E9", false},  // only A to Z are folded
        {L"?", L"a", false},                  // no other wildcard
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(to_utf8(c.pattern) + " ~ " + to_utf8(c.text));
        EXPECT_EQ(wildcard_match(c.pattern, c.text), c.match);
    }
    // Views of longer strings: nothing past the pattern's end counts.
    EXPECT_FALSE(wildcard_match(std::wstring_view(L"a*", 1), L"ab"));
    EXPECT_TRUE(wildcard_match(std::wstring_view(L"a*", 1), L"a"));
    EXPECT_TRUE(wildcard_match(std::wstring_view(L"*aa", 2), L"aa"));
}
