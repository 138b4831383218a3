#include "updates/version_check.h"

#include "platform/string_conversion.h"

#include <gtest/gtest.h>

using namespace updates;

TEST(version_check, public_texts_against_the_running_build) {
    ASSERT_EQ(current_version_string(), L"v1.0.10.0");
    // They travel as numbers in WM_VERSION_CHECK_RESULT, and the badge and dot tables test their bits.
    EXPECT_EQ((std::array{running_newer, up_to_date, minor_update, major_update}), (std::array<uint32_t, 4>{1, 2, 4, 8}));
    const std::string running = to_utf8(current_version_string());
    const struct { const char* body; uint32_t status; } cases[] = {
        {"\xEF\xBB\xBFv1.2.3.4\r\n", minor_update}, {"v1.0.10.0", up_to_date}, {"1.0.10", up_to_date},
        {"1.0.10.1", minor_update}, {"1.1", minor_update}, {"2.0.0.0", major_update}, {"V2", major_update},
        {"v1.0.11.", minor_update}, {"1.0.9", running_newer}, {"0.99.99.99", running_newer},
        {"1.0.10.0.0", up_to_date}, {"1.2.3.4.5", up_to_date}, {"1.2.x", up_to_date}, {"99999999999.0", up_to_date},
        {"2147483648", up_to_date}, {".2", up_to_date}, {"2..0", up_to_date}, {"2.", major_update},
        {"v", up_to_date}, {"", up_to_date}, {"\t \r\n", up_to_date}, {"+2", up_to_date}, {"-2", up_to_date},
        {"2 .0", up_to_date}, {"vv2", up_to_date}, {".", up_to_date}, {"\xEF\xBB\xBF", up_to_date},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body);
        EXPECT_EQ(compare_versions(clean_version_body(c.body), running), c.status);
    }
}

TEST(version_check, parsed_numbers_are_padded_and_a_failure_leaves_zeros) {
    const struct { const char* text; bool ok; version_numbers numbers; } cases[] = {
        {"v1.2.3.4", true, {1, 2, 3, 4}}, {"V7", true, {7, 0, 0, 0}}, {"2147483647.0.007", true, {2147483647, 0, 7, 0}},
        {"1.2.3.4.", true, {1, 2, 3, 4}}, {"1.2.3.x", false, {}}, {"3.4.5.6.7", false, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        version_numbers out{9, 9, 9, 9};
        EXPECT_EQ(parse_version(c.text, out), c.ok);
        EXPECT_EQ(out, c.numbers);
    }
}

TEST(version_check, a_body_loses_its_mark_and_surrounding_blanks_only) {
    const struct { std::string body, cleaned; } cases[] = {
        {"\xEF\xBB\xBF v1.2 \t\r\n", "v1.2"}, {"\n1 .2\r", "1 .2"}, {"\xEF\xBB", "\xEF\xBB"}, {" \xEF\xBB\xBF" "1", "\xEF\xBB\xBF" "1"},
        {"\r\n\t ", ""}, {"x", "x"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body);
        EXPECT_EQ(clean_version_body(c.body), c.cleaned);
    }
}

TEST(version_check, addresses_on_the_web_host) {
    EXPECT_EQ(version_text_url(), to_wide(VELDRAKE_WEB_HOST "/products/veldrake/download_public_version.txt"));
    EXPECT_EQ(download_base_url(), to_wide(VELDRAKE_WEB_HOST "/products/veldrake/Downloads/Public"));
}
