#include "common/utf_vectors.h"
#include "platform/string_conversion.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

// Under the Windows build, to_wide and to_utf8 are the platform's; the portable ones must agree.
TEST(string_conversion, round_trips_the_same_vectors_in_both_implementations) {
    for (const auto& v : utf_round_trip_vectors) {
        SCOPED_TRACE(fmt::format("utf8 of {} bytes", v.utf8.size()));
        EXPECT_EQ(to_wide(v.utf8), v.wide);
        EXPECT_EQ(to_utf8(v.wide), v.utf8);
        EXPECT_EQ(portable_utf::to_wide(v.utf8), v.wide);
        EXPECT_EQ(portable_utf::to_utf8(v.wide), v.utf8);
    }
}

TEST(string_conversion, malformed_input_becomes_replacement_characters_both_ways) {
    const struct { std::string_view utf8; std::wstring_view wide; } cases[] = {
        {"a\xFFz", L"a\uFFFDz"},          // a byte that never starts a sequence
        {"a\xC3", L"a\uFFFD"},            // a sequence cut short at the end
        {std::string_view("a\xE2\x82\xAC", 3), L"a\uFFFD"},  // cut short where the view ends, not the bytes
        {"\xE7\xB4" "b", L"\uFFFD" "b"},  // a sequence cut short before ASCII
        {"\xC0\xAF", L"\uFFFD\uFFFD"},    // an overlong form
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("{} bytes", c.utf8.size()));
        EXPECT_EQ(portable_utf::to_wide(c.utf8), c.wide);
        EXPECT_EQ(to_wide(c.utf8), c.wide);
    }
    const wchar_t lone[] = {L'a', static_cast<wchar_t>(0xD800), L'b', 0};  // a lone surrogate in either width
    EXPECT_EQ(portable_utf::to_utf8(lone), "a\xEF\xBF\xBD" "b");
    EXPECT_EQ(to_utf8(lone), "a\xEF\xBF\xBD" "b");
}
