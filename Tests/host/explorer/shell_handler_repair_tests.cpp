#include "explorer/file_type_tables.h"
#include "explorer/shell_handler_repair.h"
#include "explorer/shell_repair_run.h"
#include "host/explorer/fake_registry.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace explorer;
using namespace std::string_literals;

TEST(registry_port, string_values_need_a_string_type_and_a_terminator) {
    // The types by the platform's own numbers: REG_SZ 1, REG_EXPAND_SZ 2, REG_DWORD 4, REG_MULTI_SZ 7.
    const struct { const char* label; uint32_t type; std::string bytes; std::optional<std::wstring> text; } cases[] = {
        {"REG_SZ", 1, "a\0\x01\x01\0\0"s, L"a\x0101"}, {"REG_EXPAND_SZ, unexpanded", 2, "%\0\0\0"s, L"%"},
        {"zero bytes", REG_SZ_TYPE, "", L""}, {"odd byte count", REG_SZ_TYPE, "a\0\0"s, std::nullopt},
        {"no terminator", REG_SZ_TYPE, "a\0b\0"s, std::nullopt}, {"half a terminator", REG_SZ_TYPE, "a\0\0b"s, std::nullopt},
        {"REG_DWORD", 4, "a\0\0\0"s, std::nullopt}, {"REG_MULTI_SZ", 7, "a\0\0\0"s, std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(as_string(raw_value{c.type, c.bytes}), c.text) << c.label;
    EXPECT_EQ(std::tuple(as_dword(raw_value{4, "\x01\x02\x03\x04"s}), as_dword(raw_value{REG_DWORD_TYPE, "\x01\x02\x03"s}),
                         as_dword(raw_value{REG_SZ_TYPE, "\x01\x02\x03\x04"s})), std::tuple(0x04030201u, std::nullopt, std::nullopt));
}

TEST(shell_handler_repair, empty_arguments_do_nothing) {
    fake_registry r;
    r.plant(hive::current_user, L"Software\\Classes\\SystemFileAssociations\\.vdk\\ShellEx\\IconHandler", L"", {REG_SZ_TYPE, string_bytes(SUITE_HANDLER_CLASS)});
    EXPECT_TRUE(icon_handler_is_registered(r, L".vdk", SUITE_HANDLER_CLASS));
    const int before = r.calls;  // an empty argument is refused before any registry call
    EXPECT_FALSE(icon_handler_is_registered(r, L"", SUITE_HANDLER_CLASS) || icon_handler_is_registered(r, L".vdk", L""));
    EXPECT_FALSE(thumbnail_provider_is_registered(r, L"", SUITE_HANDLER_CLASS, THUMBNAIL_PROVIDER_INTERFACE) ||
                 thumbnail_provider_is_registered(r, L".vdk", L"", THUMBNAIL_PROVIDER_INTERFACE) ||
                 thumbnail_provider_is_registered(r, L".vdk", SUITE_HANDLER_CLASS, L""));
    register_icon_handler(r, L"", SUITE_HANDLER_CLASS, REMEMBERED_ICON_HANDLER);
    register_thumbnail_provider(r, L".vdk", SUITE_HANDLER_CLASS, L"", REMEMBERED_THUMBNAIL_PROVIDER);
    register_thumbnail_provider(r, L"", SUITE_HANDLER_CLASS, THUMBNAIL_PROVIDER_INTERFACE, REMEMBERED_THUMBNAIL_PROVIDER);
    EXPECT_EQ(repair_hijacked_handlers(r, {L"", L".vdk"}, L"", THUMBNAIL_PROVIDER_INTERFACE, L"x", {}), 0);
    EXPECT_EQ(r.calls, before);
}

TEST(shell_handler_repair, a_key_that_cannot_be_written_ends_the_run_with_one_line) {
    fake_registry r;
    r.plant(hive::current_user, L"Software\\Classes\\SystemFileAssociations\\.png\\ShellEx\\IconHandler", L"", {REG_SZ_TYPE, string_bytes(SUITE_HANDLER_CLASS)});
    r.plant(hive::current_user, L"Software\\Classes\\.png", L"", {REG_SZ_TYPE, string_bytes(L"Foo.Doc")});
    r.refuse_writes = true;
    std::vector<std::wstring> lines;
    EXPECT_FALSE(run_shell_handler_repair(r, {true, true}, [&](log_severity level, const std::wstring& line) {
        if (level == log_severity::error) lines.push_back(line);
    }));
    EXPECT_EQ(lines, std::vector<std::wstring>{L"repair_shell_handler_registrations_async failed: Failed to create/open registry key"});
}

// The repair list is built from the known types; its size and the missing .wmv pin the data.
TEST(file_type_tables, repair_list_has_62_types_without_wmv_and_each_table_is_lower_case_without_repeats) {
    EXPECT_EQ(std::pair(repair_extension_list.size(), std::ranges::count(repair_extension_list, ".wmv")), std::pair(size_t{62}, std::ptrdiff_t{0}));
    for (const auto* table : {&known_file_types, &embedded_metadata_types, &rich_preview_types, &photo_types}) {
        for (const auto& ext : *table) {
            EXPECT_TRUE(ext.front() == '.' && std::ranges::none_of(ext, [](char c) { return c >= 'A' && c <= 'Z'; })) << ext;
            EXPECT_EQ(std::ranges::count(*table, ext), 1) << ext;
        }
    }
}
