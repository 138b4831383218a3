#pragma once

// The contract of the shell handler repair and the treatment overrides, compiled into both the host
// tests (the in-memory registry) and the Win32 tests (a throwaway key of the real registry under Wine).
#include "explorer/shell_handler_repair.h"
#include "explorer/shell_repair_run.h"
#include "explorer/thumbnail_treatment.h"
#include "platform/string_conversion.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

struct registry_under_test {
    virtual ~registry_under_test() = default;
    virtual explorer::registry_port& port() = 0;
    // Test set-up in any hive; the key is created.
    virtual void plant(explorer::hive root, const std::wstring& key, const std::wstring& name, const explorer::raw_value& value) = 0;
};
// Each test program defines it for its own registry.
std::unique_ptr<registry_under_test> make_registry_under_test();

namespace registry_contract {

using namespace explorer;
const std::wstring CLS = SUITE_HANDLER_CLASS, IID = THUMBNAIL_PROVIDER_INTERFACE;
const std::wstring OTHER = L"{00000000-1111-2222-3333-444444444444}";
const std::wstring ASSOC = L"Software\\Classes\\SystemFileAssociations\\";

inline raw_value text(const std::wstring& s) { return {REG_SZ_TYPE, string_bytes(s)}; }
inline raw_value dword(uint32_t n) { return {REG_DWORD_TYPE, std::string(reinterpret_cast<const char*>(&n), 4)}; }
inline std::wstring icon_key(const std::wstring& name) { return L"Software\\Classes\\" + name + L"\\ShellEx\\IconHandler"; }
inline std::wstring thumb_key(const std::wstring& name) { return L"Software\\Classes\\" + name + L"\\ShellEx\\" + IID; }

struct test_registry {
    std::unique_ptr<registry_under_test> r = make_registry_under_test();
    std::vector<std::wstring> lines;
    void plant(const std::wstring& key, const std::wstring& name, const raw_value& value, hive root = hive::current_user) {
        r->plant(root, key, name, value);
    }
    // A claimed type: both claims name `class_id`.
    void claim(const std::wstring& ext, const std::wstring& class_id = CLS) {
        plant(ASSOC + ext + L"\\ShellEx\\IconHandler", L"", text(class_id));
        plant(ASSOC + ext + L"\\ShellEx\\" + IID, L"", text(class_id));
    }
    // An image type that the suite's provider serves.
    void image_type(const std::wstring& ext, const std::wstring& perceived = L"image") {
        plant(ASSOC + ext + L"\\ShellEx\\" + IID, L"", text(CLS));
        plant(ext, L"PerceivedType", text(perceived), hive::classes_root);
    }
    std::wstring read(const std::wstring& key, const std::wstring& name = L"") { return read_registry_string(r->port(), hive::current_user, key, name); }
    std::optional<raw_value> query(const std::wstring& key, const std::wstring& name) { return r->port().query(hive::current_user, key, name, 2048); }
    log_line sink() { return [this](log_severity, const std::wstring& line) { lines.push_back(line); }; }
    int32_t repair(const std::wstring& ext) { return repair_hijacked_handlers(r->port(), {ext}, CLS, IID, REMEMBERED_ICON_HANDLER, sink()); }
    int32_t treat(bool suppress) { return apply_thumbnail_treatment_overrides(r->port(), suppress, CLS, IID, TREATMENT_MARKER); }
};

TEST(registry_contract, hijack_from_each_prog_id_source_is_repaired_once) {
    const struct { const char* source; hive root; std::wstring key, name; } cases[] = {
        {"user choice", hive::current_user, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\.vdk\\UserChoice", L"ProgId"},
        {"user classes", hive::current_user, L"Software\\Classes\\.vdk", L""},
        {"classes root", hive::classes_root, L".vdk", L""},
        {"user open-with", hive::current_user, L"Software\\Classes\\.vdk\\OpenWithProgids", L"Foo.Doc"},
        {"machine open-with", hive::local_machine, L"Software\\Classes\\.vdk\\OpenWithProgids", L"Foo.Doc"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.source);
        test_registry t;
        t.claim(L".vdk");
        t.plant(c.key, c.name, text(c.name.empty() || c.name == L"ProgId" ? L"Foo.Doc" : L""), c.root);
        t.plant(icon_key(L"Foo.Doc"), L"", text(OTHER));
        EXPECT_EQ(t.repair(L"vdk"), 2);
        EXPECT_EQ(t.lines, (std::vector<std::wstring>{L"Repaired hijacked icon handler registration for .vdk",
                                                      L"Repaired hijacked thumbnail provider registration for .vdk"}));
        EXPECT_EQ(t.read(icon_key(L"Foo.Doc")) + t.read(icon_key(L"Foo.Doc"), REMEMBERED_ICON_HANDLER), CLS + OTHER);
        EXPECT_EQ(t.read(thumb_key(L"Foo.Doc")) + t.read(thumb_key(L".vdk")), CLS + CLS);
        EXPECT_EQ(t.repair(L".vdk"), 0) << "a second run finds everything in place";
    }
}

// Neither the suite's own value, an empty one nor none at all is an original to remember.
TEST(registry_contract, only_a_foreign_original_is_remembered) {
    for (const auto& present : {std::optional(CLS), std::optional(std::wstring()), std::optional<std::wstring>()}) {
        test_registry t;
        if (present) t.plant(icon_key(L"Foo.Doc"), L"", text(*present));
        write_handler_value(t.r->port(), icon_key(L"Foo.Doc"), L"", CLS, REMEMBERED_ICON_HANDLER);
        EXPECT_FALSE(t.query(icon_key(L"Foo.Doc"), REMEMBERED_ICON_HANDLER)) << to_utf8(present.value_or(L"(none)"));
    }
}

TEST(registry_contract, appx_prog_ids_are_never_touched) {
    for (const std::wstring id : {L"AppX4hxtad77fbk3jkkeerkrm0ze94wjf3s9", L"appxq", L"APPX"}) {
        SCOPED_TRACE(to_utf8(id));
        test_registry t;
        t.claim(L".vdk");
        t.plant(thumb_key(L".vdk"), L"", text(CLS));
        t.plant(L"Software\\Classes\\.vdk\\OpenWithProgids", id, text(L""));
        EXPECT_EQ(t.repair(L".vdk"), 0);
        EXPECT_FALSE(t.query(L"Software\\Classes\\" + id, L"")) << "never created";
    }
}

TEST(registry_contract, ico_never_gets_an_override_and_loses_an_old_one) {
    for (const bool marked : {false, true}) {
        test_registry t;
        t.image_type(L".ico");
        if (marked) t.plant(ASSOC + L".ico", L"Treatment", dword(0)), t.plant(ASSOC + L".ico", TREATMENT_MARKER, dword(1));
        EXPECT_EQ(t.treat(true), marked ? 1 : 0);
        EXPECT_FALSE(t.query(ASSOC + L".ico", L"Treatment") || has_treatment_marker(t.r->port(), L".ico", TREATMENT_MARKER)) << marked;
    }
}

TEST(registry_contract, treatment_string_is_replaced_and_foreign_dword_left_alone) {
    const auto none = std::nullopt;
    const struct { const char* label; std::optional<raw_value> before; bool marked, suppress; std::wstring perceived; int32_t count;
                   std::optional<uint32_t> after; bool marked_after; } cases[] = {
        {"absent", none, false, true, L"image", 1, 0u, true},
        {"string", text(L"2"), false, true, L"Image", 1, 0u, true},
        {"foreign dword", dword(1), false, true, L"image", 0, 1u, false},
        {"ours, still wanted", dword(0), true, true, L"image", 0, 0u, true},
        {"ours, suppress off", dword(0), true, false, L"image", 1, none, false},
        {"ours, no longer an image", dword(0), true, true, L"text", 1, none, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        test_registry t;
        t.image_type(L".png", c.perceived);
        t.plant(ASSOC + L"png", L"Treatment", text(L"no dot: skipped"));
        if (c.before) t.plant(ASSOC + L".png", L"Treatment", *c.before);
        if (c.marked) t.plant(ASSOC + L".png", TREATMENT_MARKER, dword(1));
        EXPECT_EQ(t.treat(c.suppress), c.count);
        EXPECT_EQ(std::pair(as_dword(t.query(ASSOC + L".png", L"Treatment")), has_treatment_marker(t.r->port(), L".png", TREATMENT_MARKER)),
                  std::pair(c.after, c.marked_after));
        EXPECT_EQ(t.read(ASSOC + L"png", L"Treatment"), L"no dot: skipped");
    }
}

TEST(registry_contract, shell_is_told_only_of_a_change) {
    const struct { const char* label; bool hijacked, marked; repair_choice choice; bool told; } cases[] = {
        {"all in place", false, false, {true, false}, false}, {"a hijack", true, false, {true, false}, true},
        {"an override to set", false, false, {true, true}, true}, {"overlays off, nothing marked", true, false, {false, false}, false},
        {"overlays off, a marker to remove", true, true, {false, false}, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        test_registry t;
        t.claim(L".png");
        t.image_type(L".png");
        t.plant(thumb_key(L".png"), L"", text(c.hijacked ? OTHER : CLS));
        if (c.marked) t.plant(ASSOC + L".png", TREATMENT_MARKER, dword(1));
        EXPECT_EQ(run_shell_handler_repair(t.r->port(), c.choice, t.sink()), c.told);
        EXPECT_EQ(t.lines.empty(), !c.told);
    }
}

}  // namespace registry_contract
