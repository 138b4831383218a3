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

}  // namespace

TEST(tray_toast_ipc, round_trips_a_request_and_blanks_separators_in_fields) {
    const toast_request request{L"C:\\Program Files\\Veldrake\\logo.ico", L"Veldrake", L"Title\u0001with separator",
                                L"Text \u7D22\u5F15", toast_click_action::add_to_index, L"C:\\A"};
    const std::wstring payload = encode_toast_request(request);
    EXPECT_EQ(payload, fields({L"1", L"C:\\Program Files\\Veldrake\\logo.ico", L"Veldrake", L"Title with separator",
                               L"Text \u7D22\u5F15", L"2", L"C:\\A"}));
    toast_request decoded;
    ASSERT_TRUE(decode_toast_request(payload.c_str(), payload.size(), decoded));
    toast_request expected = request;
    expected.title = L"Title with separator";
    EXPECT_EQ(decoded, expected);
    // The other actions' numbers on the wire, which other programs of the suite send.
    for (const auto& [action, wire] : {std::pair{toast_click_action::none, L"0"}, {toast_click_action::open_settings_tab, L"1"}}) {
        EXPECT_EQ(encode_toast_request({L"i", L"t", L"T", L"x", action, L""}), fields({L"1", L"i", L"t", L"T", L"x", wire, L""}));
    }
}

// A refused request leaves the output alone.
TEST(tray_toast_ipc, decoding_takes_a_version_1_request_with_text_up_to_the_terminator_or_the_length) {
    const std::wstring tail = fields({L"1", L"i", L"t", L"T", L"x", L"0", L"tail"});
    constexpr size_t whole = std::wstring::npos;
    const struct { const char* name; std::wstring payload; size_t length; const wchar_t* click_arg; } cases[] = {
        {"six fields", fields({L"1", L"i", L"t", L"T", L"x", L"0"}), whole, nullptr},
        {"version 2", fields({L"2", L"i", L"t", L"T", L"x", L"0", L""}), whole, nullptr},
        {"empty text", fields({L"1", L"i", L"t", L"T", L"", L"0", L""}), whole, nullptr},
        {"action out of range of i32", fields({L"1", L"i", L"t", L"T", L"x", L"99999999999", L""}), whole, nullptr},
        {"a terminator ends it", tail + L'\0' + L"\u0001garbage", whole, L"tail"},
        {"the length ends it in the last field", tail, tail.size() - 2, L"ta"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        toast_request out;
        out.icon_path = L"untouched";
        const size_t length = std::min(c.length, c.payload.size());
        EXPECT_EQ(decode_toast_request(c.payload.c_str(), length, out), c.click_arg != nullptr);
        EXPECT_EQ(out.icon_path, c.click_arg ? L"i" : L"untouched");
        EXPECT_EQ(out.click_arg, c.click_arg ? c.click_arg : L"");
    }
    toast_request out;
    EXPECT_FALSE(decode_toast_request(nullptr, 10, out));
}

TEST(tray_toast_ipc, add_to_index_argument_lists_paths_and_an_optional_leading_subject) {
    const struct { std::wstring arg; std::optional<std::vector<std::wstring>> paths; std::wstring subject; } cases[] = {
        {L"C:\\\u0002D:\\Data\\", std::vector<std::wstring>{L"C:\\", L"D:\\Data\\"}, L""},
        {L"--subject:Photos\u0002C:\\Pictures", std::vector<std::wstring>{L"C:\\Pictures"}, L"Photos"},
        {L"\u0002\u0002--subject:Photos\u0002\u0002C:\\A\u0002", std::vector<std::wstring>{L"C:\\A"}, L"Photos"},
        {L"C:\\A\u0002--subject:late", std::vector<std::wstring>{L"C:\\A", L"--subject:late"}, L""},
        {L"--subject:Photos", std::nullopt, L""},
        {L"\u0002\u0002", std::nullopt, L""},
    };
    for (const auto& c : cases) {
        const auto parsed = parse_add_to_index_arg(c.arg);
        EXPECT_EQ(parsed ? std::optional(std::pair(parsed->paths, parsed->subject)) : std::nullopt,
                  c.paths ? std::optional(std::pair(*c.paths, c.subject)) : std::nullopt) << c.arg.size() << " characters";
    }
}
