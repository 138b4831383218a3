#include "host/settings/settings_sandbox.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using high_level_settings::settings_file;

namespace {
const std::vector<std::wstring> fallback{L"fallback"};
}  // namespace

TEST(loaded_settings, flattens_one_level_of_objects_and_reads_only_values_of_the_asked_type) {
    settings_sandbox sandbox;
    ASSERT_TRUE(sandbox.load(document_with_settings(R"({
        "flag": false, "name": "plain", "size": 14, "list": ["a", 1, null, "b", ["c"], {"d": 1}],
        "general": {"showX": false, "deeper": {"y": 1}, "font": "Bahnschrift", "empty": []},
        "huge": 2147483648, "lowest": -2147483648, "fraction": 12.5, "whole_fraction": 12.0, "exponent": 1e2,
        "nothing": null, "general.literal": 7, "twice": 1, "twice": 2, "nulled": 3, "nulled": null,
        "unicode": "Gr\u00fc\u00dfe \u7d22\u5f15"
    })")));
    const settings_file& s = sandbox.file();
    EXPECT_FALSE(s.get_bool("x", "general.showX")) << "a member of an object reads as parent.child";
    EXPECT_EQ(s.get_string("x", "general.font", L"?"), L"Bahnschrift");
    EXPECT_EQ(s.get_string("x", "unicode", L"?"), L"Gr\u00FC\u00DFe \u7D22\u5F15");
    EXPECT_EQ(s.get_int("x", "lowest", 0), -2147483647 - 1);
    EXPECT_EQ(s.get_int("x", "general.literal", 0), 7);
    EXPECT_EQ(s.get_int("x", "twice", 0), 2) << "the later duplicate wins";
    EXPECT_EQ(s.get_int("x", "nulled", 0), 3) << "a dropped value replaces nothing";
    EXPECT_EQ(s.get_string_list("x", "list", fallback), (std::vector<std::wstring>{L"a", L"b"}));
    EXPECT_EQ(s.get_string_list("x", "general.empty", fallback), std::vector<std::wstring>{});

    // A value of another type reads as absent.
    EXPECT_EQ(s.get_int("x", "flag", 9), 9);
    EXPECT_EQ(s.get_string("x", "size", L"?"), L"?");
    EXPECT_TRUE(s.get_bool("x", "name"));
    EXPECT_EQ(s.get_string_list("x", "name", fallback), fallback);

    for (const char* key : {"huge", "fraction", "whole_fraction", "exponent", "nothing", "general.deeper",
                            "general.deeper.y", "general", "deeper.y", "absent"}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(s.get_int("x", key, -5), -5);
        EXPECT_EQ(s.get_string("x", key, L"?"), L"?");
        EXPECT_EQ(s.get_string_list("x", key, fallback), fallback);
        EXPECT_TRUE(s.get_bool("x", key));
    }
}

// App ids compare exactly; records without a text id are dropped.
TEST(loaded_settings, the_first_record_of_an_id_counts_and_only_an_exact_disabled_switches_it_off) {
    settings_sandbox sandbox;
    ASSERT_TRUE(sandbox.load(R"({"apps":[
        "not a record", 5, null, {"name":"no id","status":"enabled"}, {"app_id":""}, {"app_id":7},
        {"app_id":"x","status":"disabled","settings":{"size":4}},
        {"app_id":"x","status":"enabled","settings":{"size":5,"other":6}},
        {"app_id":"X","status":"Disabled","settings":{"size":8}},
        {"app_id":"blank","status":"disabled ","settings":"not an object"},
        {"app_id":"not text","status":false}
    ]})"));
    const settings_file& s = sandbox.file();
    EXPECT_FALSE(s.is_app_enabled("x", true));
    EXPECT_EQ(s.get_int("x", "size", 0), 4);
    EXPECT_EQ(s.get_int("x", "other", 0), 0) << "nothing of the second record is merged";
    EXPECT_EQ(s.get_int("X", "size", 0), 8);
    for (const char* enabled : {"X", "blank", "not text"}) EXPECT_TRUE(s.is_app_enabled(enabled, false)) << enabled;
    for (const char* absent : {"", "7", "absent"}) {
        EXPECT_FALSE(s.is_app_enabled(absent, false)) << absent;
        EXPECT_TRUE(s.is_app_enabled(absent, true)) << absent;
    }
}

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
        {"empty file", "", 20},
        {"invalid UTF-8 in a string", sized(24, "\"a\xFF\xFE\""), 20},
        {"513 levels", sized(25, nested(509)), 20},
        {"512 levels after closed siblings", sized(26, "[[], {}, " + nested(507) + "]"), 26},
        {"brackets in a string after an escaped quote", sized(27, R"("\")" + nested(600) + R"(")"), 27},
        {"apps absent", R"({"version":"2.0"})", 20},
        {"apps not an array", R"({"apps":{"app_id":"x","settings":{"size": 28}}})", 20},
        {"apps empty", R"({"apps":[]})", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(sandbox.load(document_with_settings(R"({"size": 20})", "disabled")) && sandbox.load(c.text));
        EXPECT_EQ(std::pair(sandbox.file().get_int("x", "size", 0), sandbox.file().is_app_enabled("x", true)), std::pair(c.size, c.size != 20));
    }
    EXPECT_FALSE(high_level_settings::parse_settings_document("[]").has_value()) << "a root that is no object";
}
