#include "host/settings/settings_sandbox.h"

#include <gtest/gtest.h>

#include <string>

TEST(loaded_settings, a_document_that_does_not_parse_keeps_the_last_good_content) {
    settings_sandbox sandbox;
    // The document itself holds four levels.
    const auto nested = [](int levels) { return std::string(levels, '[') + std::string(levels, ']'); };
    const auto sized = [](int size, const std::string& more) {
        return document_with_settings(fmt::format(R"({{"size": {}, "more": {}}})", size, more));
    };
    const struct { const char* name; std::string text; int size; } cases[] = {
        {"syntax error", R"({"apps":[{"app_id":"x","settings":{"size": 21}}])", 20},
        {"byte-order mark", "\xEF\xBB\xBF" + sized(22, "0"), 20},
        {"invalid UTF-8 in a string", sized(24, "\"a\xFF\xFE\""), 20},
        {"513 levels", sized(25, nested(509)), 20},
        {"512 levels after closed siblings", sized(26, "[[], {}, " + nested(507) + "]"), 26},
        {"brackets in a string after an escaped quote", sized(27, R"("\")" + nested(600) + R"(")"), 27},
        {"apps not an array", R"({"apps":{"app_id":"x","settings":{"size": 28}}})", 20},
        {"apps empty", R"({"apps":[]})", 0},
        {"no member at all", "{}", 20},
        {"a record with no member", R"({"apps":[{}]})", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(sandbox.load(document_with_settings(R"({"size": 20})", "disabled")) && sandbox.load(c.text));
        EXPECT_EQ(std::pair(sandbox.file().get_int("x", "size", 0), sandbox.file().is_app_enabled("x", true)), std::pair(c.size, c.size != 20));
    }
    EXPECT_FALSE(high_level_settings::parse_settings_document("[]").has_value()) << "a root that is no object";
}
