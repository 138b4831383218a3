#include "toasts/tray_toast_ipc.h"

#include <gtest/gtest.h>

using namespace tray_toast_ipc;

namespace {

std::wstring fields(std::initializer_list<std::wstring_view> parts) {
    std::wstring payload;
    for (const auto part : parts) (payload += part) += FIELD_SEPARATOR;
    payload.pop_back();
    return payload;
}

bool decode(const std::wstring& payload, toast_request& out) {
    return decode_toast_request(payload.c_str(), payload.size(), out);
}

}  // namespace

TEST(tray_toast_ipc, round_trips_a_request_and_blanks_separators_in_fields) {
    const toast_request request{L"C:\\Program Files\\Veldrake\\logo.ico", L"Veldrake", L"Title\u0001with separator",
                                L"Text \u7D22\u5F15", toast_click_action::open_settings_tab, L"menu-tab"};
    const std::wstring payload = encode_toast_request(request);
    EXPECT_EQ(payload, fields({L"1", L"C:\\Program Files\\Veldrake\\logo.ico", L"Veldrake", L"Title with separator",
                               L"Text \u7D22\u5F15", L"1", L"menu-tab"}));
    toast_request decoded;
    ASSERT_TRUE(decode(payload, decoded));
    toast_request expected = request;
    expected.title = L"Title with separator";
    EXPECT_EQ(decoded, expected);
}

TEST(tray_toast_ipc, decoding_refuses_what_is_not_a_version_1_request_with_text) {
    const struct { const char* name; std::wstring payload; bool accepted; } cases[] = {
        {"six fields", fields({L"1", L"i", L"t", L"title", L"text", L"0"}), false},
        {"version 2", fields({L"2", L"i", L"t", L"title", L"text", L"0", L""}), false},
        {"non-numeric version", fields({L"v1", L"i", L"t", L"title", L"text", L"0", L""}), false},
        {"empty text", fields({L"1", L"i", L"t", L"title", L"", L"0", L""}), false},
        {"non-numeric action", fields({L"1", L"i", L"t", L"title", L"text", L"open", L""}), false},
        {"action out of range of i32", fields({L"1", L"i", L"t", L"title", L"text", L"99999999999", L""}), false},
        {"eight fields: the eighth is ignored", fields({L"1", L"i", L"t", L"title", L"text", L"0", L"", L"x"}), true},
        {"blanks and junk around the version", fields({L" 1abc", L"i", L"t", L"title", L"text", L"0", L""}), true},
        {"unknown action 7", fields({L"1", L"i", L"t", L"title", L"text", L"7", L""}), true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        toast_request out;
        out.icon_path = L"untouched";
        EXPECT_EQ(decode(c.payload, out), c.accepted);
        EXPECT_EQ(out.icon_path, c.accepted ? L"i" : L"untouched") << "a refused request leaves the output alone";
    }
}

TEST(tray_toast_ipc, decoding_stops_at_the_terminator_or_the_length) {
    std::wstring payload = fields({L"1", L"", L"", L"title", L"text", L"0", L"tail"});
    const std::wstring with_terminator = payload + L'\0' + L"\u0001garbage";
    toast_request out;
    ASSERT_TRUE(decode_toast_request(with_terminator.c_str(), with_terminator.size(), out));
    EXPECT_EQ(out.click_arg, L"tail");

    // An unterminated payload cut inside the last field keeps what the length covers.
    ASSERT_TRUE(decode_toast_request(payload.c_str(), payload.size() - 2, out));
    EXPECT_EQ(out.click_arg, L"ta");
    // Cut before the seventh field, it fails.
    EXPECT_FALSE(decode_toast_request(payload.c_str(), payload.find(L"tail") - 1, out));
    EXPECT_FALSE(decode_toast_request(nullptr, 10, out));
    EXPECT_FALSE(decode_toast_request(payload.c_str(), 0, out));
}

TEST(tray_toast_ipc, add_to_index_argument_lists_paths_and_an_optional_leading_subject) {
    const struct { std::wstring arg; std::optional<std::vector<std::wstring>> paths; std::wstring subject; } cases[] = {
        {L"C:\\\u0002D:\\Data\\", std::vector<std::wstring>{L"C:\\", L"D:\\Data\\"}, L""},
        {L"--subject:Photos\u0002C:\\Pictures", std::vector<std::wstring>{L"C:\\Pictures"}, L"Photos"},
        {L"\u0002\u0002--subject:Photos\u0002\u0002C:\\A\u0002", std::vector<std::wstring>{L"C:\\A"}, L"Photos"},
        {L"C:\\A\u0002--subject:late", std::vector<std::wstring>{L"C:\\A", L"--subject:late"}, L""},
        {L"--subject:Photos", std::nullopt, L""},
        {L"", std::nullopt, L""},
        {L"\u0002\u0002", std::nullopt, L""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "case with " << c.arg.size() << " characters");
        const auto parsed = parse_add_to_index_arg(c.arg);
        ASSERT_EQ(parsed.has_value(), c.paths.has_value());
        if (!parsed) continue;
        EXPECT_EQ(parsed->paths, *c.paths);
        EXPECT_EQ(parsed->subject, c.subject);
    }
}
