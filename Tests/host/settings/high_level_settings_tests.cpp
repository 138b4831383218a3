#include "host/settings/settings_sandbox.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using high_level_settings::settings_file;

namespace {

// A settings file loaded from `text`, in a sandbox that lives as long as the fixture.
class loaded_settings : public testing::Test {
protected:
    settings_file& load(std::string_view text) {
        if (!file) file = sandbox.open();
        settings_sandbox::write(sandbox.user_file(), text, ++hour);
        EXPECT_TRUE(file->reload_if_changed(false));
        return *file;
    }

    settings_sandbox sandbox;
    std::unique_ptr<settings_file> file;
    int hour = 0;
};

const std::vector<std::wstring> fallback_list{L"fallback"};

}  // namespace

TEST_F(loaded_settings, flattens_one_level_of_objects_and_drops_what_has_no_type) {
    const auto& s = load(document_with_settings(R"({
        "flag": false, "name": "plain", "size": 14, "list": ["a", 1, null, "b", ["c"], {"d": 1}],
        "general": {"showX": false, "deeper": {"y": 1}, "font": "Bahnschrift", "empty": []},
        "huge": 2147483648, "lowest": -2147483648, "fraction": 12.5, "whole_fraction": 12.0, "exponent": 1e2,
        "nothing": null, "general.literal": 7,
        "twice": 1, "twice": 2, "nulled": 3, "nulled": null,
        "unicode": "Gr\u00fc\u00dfe \u7d22\u5f15"
    })"));

    EXPECT_FALSE(s.get_bool("x", "flag"));
    EXPECT_FALSE(s.get_bool("x", "general.showX")) << "a member of an object reads as parent.child";
    EXPECT_EQ(s.get_string("x", "name", L"?"), L"plain");
    EXPECT_EQ(s.get_string("x", "general.font", L"?"), L"Bahnschrift");
    EXPECT_EQ(s.get_string("x", "unicode", L"?"), L"Gr\u00FC\u00DFe \u7D22\u5F15");
    EXPECT_EQ(s.get_int("x", "size", 0), 14);
    EXPECT_EQ(s.get_int("x", "lowest", 0), -2147483647 - 1);
    EXPECT_EQ(s.get_int("x", "general.literal", 0), 7);
    EXPECT_EQ(s.get_int("x", "twice", 0), 2) << "the later duplicate wins";
    EXPECT_EQ(s.get_int("x", "nulled", 0), 3) << "a dropped value replaces nothing";
    EXPECT_EQ(s.get_string_list("x", "list", fallback_list), (std::vector<std::wstring>{L"a", L"b"}));
    EXPECT_EQ(s.get_string_list("x", "general.empty", fallback_list), std::vector<std::wstring>{});

    const struct {
        const char* key;
    } dropped[] = {{"huge"}, {"fraction"}, {"whole_fraction"}, {"exponent"}, {"nothing"}, {"general.deeper"},
                   {"general.deeper.y"}, {"general"}, {"deeper.y"}};
    for (const auto& d : dropped) {
        SCOPED_TRACE(d.key);
        EXPECT_EQ(s.get_int("x", d.key, -5), -5);
        EXPECT_EQ(s.get_string("x", d.key, L"?"), L"?");
        EXPECT_EQ(s.get_string_list("x", d.key, fallback_list), fallback_list);
        EXPECT_TRUE(s.get_bool("x", d.key));
    }
}

TEST_F(loaded_settings, a_value_of_another_type_reads_as_absent) {
    const auto& s = load(document_with_settings(R"({"flag": "false", "size": "12", "name": 3, "list": "a",
                                                    "general": {"fontSizeDip": 12.5, "mode": ["off"]}})"));
    EXPECT_TRUE(s.get_bool("x", "flag"));
    EXPECT_EQ(s.get_int("x", "size", 9), 9);
    EXPECT_EQ(s.get_string("x", "name", L"dflt"), L"dflt");
    EXPECT_EQ(s.get_string_list("x", "list", fallback_list), fallback_list);
    EXPECT_EQ(s.get_int("x", "general.fontSizeDip", 12), 12);
    EXPECT_EQ(s.get_string("x", "general.mode", L"all-except"), L"all-except");
    EXPECT_EQ(s.get_int("absent", "size", 4), 4);
    EXPECT_EQ(s.get_int("x", "absent", 4), 4);
}

TEST_F(loaded_settings, only_an_exact_disabled_switches_an_app_off) {
    const struct {
        const char* status_member;
        bool enabled;
    } cases[] = {
        {R"("status":"disabled",)", false}, {R"("status":"Disabled",)", true}, {R"("status":"disabled ",)", true},
        {R"("status":"enabled",)", true},   {R"("status":"",)", true},         {R"("status":false,)", true},
        {"", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.status_member);
        const auto& s = load(fmt::format(R"({{"apps":[{{"app_id":"x",{}"settings":{{}}}}]}})", c.status_member));
        EXPECT_EQ(s.is_app_enabled("x", !c.enabled), c.enabled);
    }
    EXPECT_TRUE(file->is_app_enabled("absent", true));
    EXPECT_FALSE(file->is_app_enabled("absent", false));
}

TEST_F(loaded_settings, the_first_record_of_an_app_id_counts_and_records_without_one_are_dropped) {
    const auto& s = load(R"({"apps":[
        "not a record", 5, null,
        {"name":"no id","settings":{"size":1}},
        {"app_id":"","settings":{"size":2}},
        {"app_id":7,"settings":{"size":3}},
        {"app_id":"x","status":"disabled","settings":{"size":4}},
        {"app_id":"x","status":"enabled","settings":{"size":5,"other":6}},
        {"app_id":"X","settings":{"size":8}},
        {"app_id":"y","settings":"not an object"}
    ]})");
    EXPECT_FALSE(s.is_app_enabled("x", true));
    EXPECT_EQ(s.get_int("x", "size", 0), 4);
    EXPECT_EQ(s.get_int("x", "other", 0), 0) << "nothing of the second record is merged";
    EXPECT_EQ(s.get_int("X", "size", 0), 8) << "app ids compare exactly";
    EXPECT_TRUE(s.is_app_enabled("y", false)) << "a record without options still counts";
    EXPECT_FALSE(s.is_app_enabled("", false));
    EXPECT_FALSE(s.is_app_enabled("7", false));
}

TEST_F(loaded_settings, a_bad_document_keeps_the_last_good_content) {
    const std::string good = document_with_settings(R"({"size": 20})", "disabled");
    std::string nested(600, '[');
    nested += std::string(600, ']');
    const struct {
        const char* name;
        std::string text;
    } cases[] = {
        {"syntax error", R"({"apps":[{"app_id":"x","settings":{"size": 21}}])"},
        {"byte-order mark", "\xEF\xBB\xBF" + document_with_settings(R"({"size": 22})")},
        {"empty file", ""},
        {"root is an array", "[" + document_with_settings(R"({"size": 23})") + "]"},
        {"root is a string", R"("apps")"},
        {"two roots", document_with_settings(R"({"size": 24})") + "{}"},
        {"invalid UTF-8 in a string", document_with_settings("{\"size\": 25, \"name\": \"a\xFF\xFE\"}")},
        {"deep brackets", document_with_settings(R"({"size": 26, "deep": )" + nested + "}")},
        {"apps absent", R"({"version":"2.0"})"},
        {"apps not an array", R"({"apps":{"app_id":"x","settings":{"size": 27}}})"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        load(good);
        const auto& s = load(c.text);
        EXPECT_EQ(s.get_int("x", "size", 0), 20);
        EXPECT_FALSE(s.is_app_enabled("x", true));
    }
}

TEST_F(loaded_settings, an_empty_apps_array_empties_the_content) {
    load(document_with_settings(R"({"size": 20})"));
    const auto& s = load(R"({"apps":[]})");
    EXPECT_EQ(s.get_int("x", "size", 0), 0);
    EXPECT_TRUE(s.is_app_enabled("x", true));
}

TEST_F(loaded_settings, a_bad_document_at_first_load_leaves_every_default) {
    const auto& s = load("{\"apps\": [");
    EXPECT_TRUE(s.is_app_enabled("tessary", true));
    EXPECT_FALSE(s.is_app_enabled("tessary", false));
    EXPECT_TRUE(s.get_bool("tessary", "general.showInExplorerPanel"));
    EXPECT_EQ(s.get_int("context-menu-replacement", "appearance.fontSizeDip", 12), 12);
}

TEST_F(loaded_settings, a_five_megabyte_document_loads_whole) {
    std::string text = R"({"version":"big","apps":[)";
    int records = 0;
    while (text.size() < 5 * 1024 * 1024) {
        text += fmt::format(R"({{"app_id":"app-{0}","name":"App {0}","status":"enabled","settings":{{"general":{{)"
                            R"("size":{0},"flag":false,"names":["a","b","c"],"text":"{1}"}}}}}},)",
                            records, std::string(200, 'v'));
        ++records;
    }
    text += R"({"app_id":"last","status":"disabled","settings":{"general":{"size":-1}}}]})";
    const auto& s = load(text);
    EXPECT_EQ(s.get_int("app-0", "general.size", 0), 0);
    EXPECT_EQ(s.get_int(fmt::format("app-{}", records - 1), "general.size", 0), records - 1);
    EXPECT_FALSE(s.get_bool("app-17", "general.flag"));
    EXPECT_FALSE(s.is_app_enabled("last", true));
    EXPECT_EQ(s.get_int("last", "general.size", 0), -1);
}
