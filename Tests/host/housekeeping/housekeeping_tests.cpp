#include "housekeeping/dialog_hook.h"
#include "housekeeping/reconcile.h"
#include "housekeeping/suite_shutdown.h"
#include "host/settings/settings_sandbox.h"

#include <gtest/gtest.h>

#include <set>
#include <span>

using namespace housekeeping;

TEST(reconcile, retries_a_failed_controller_nine_times_and_stops_at_its_first_success) {
    using enum reconcile_step;
    const struct { uint32_t attempt; int32_t exit_code; reconcile_step step; } cases[] = {
        {1, 0, done}, {1, 1, retry}, {9, -1, retry}, {10, 5, give_up}, {10, 0, done}};
    for (const auto& c : cases) EXPECT_EQ(after_reconcile_attempt(c.attempt, c.exit_code), c.step) << c.attempt << " " << c.exit_code;
}

TEST(reconcile, only_created_windows_themselves_of_dialog_or_explorer_classes_are_taken) {
    constexpr uint32_t create = 0x8000;
    using enum event_use;
    const struct { window_event e; event_use use; } cases[] = {
        {{create, true, 0, 0, L"CabinetWClass"}, explorer_window}, {{create, true, 0, 0, L"Progman"}, explorer_window},
        {{create, true, 0, 0, L"WorkerW"}, explorer_window}, {{create, true, 0, 0, L"Shell_TrayWnd"}, explorer_window},
        {{create, true, 0, 0, L"#32770"}, dialog}, {{create, true, 0, 0, L"cabinetwclass"}, ignore},  // compared exactly
        {{create, true, 0, 0, L"Shell_SecondaryTrayWnd"}, ignore}, {{0x8001, true, 0, 0, L"CabinetWClass"}, ignore},
        {{create, false, 0, 0, L"CabinetWClass"}, ignore}, {{create, true, -4, 0, L"CabinetWClass"}, ignore},
        {{create, true, 0, 1, L"#32770"}, ignore},
    };
    for (const auto& c : cases) EXPECT_EQ(classify_window_event(c.e), c.use) << testing::PrintToString(c.e.class_name) << " " << c.e.event;
}

// Recorded windows of one session: each explorer.exe process is reconciled at its first window only.
TEST(reconcile, each_explorer_process_asks_once_and_an_unreadable_name_asks_again_later) {
    std::vector<uint32_t> seen;
    const struct { uint32_t pid; const wchar_t* image; bool first; } windows[] = {
        {40, L"explorer.exe", true}, {40, L"explorer.exe", false}, {0, L"explorer.exe", false}, {52, L"", false},
        {52, L"explorer.exe", true}, {60, L"notepad.exe", false}, {60, L"explorer.exe", true}, {52, L"explorer.exe", false},
    };
    for (const auto& w : windows) EXPECT_EQ(first_sight_of_explorer(seen, w.pid, w.image), w.first) << w.pid;
    EXPECT_EQ(seen, (std::vector<uint32_t>{40, 52, 60}));
}

// A list's size is fixed: a dropped name leaves a null, a doubled one a repeat.
TEST(suite_shutdown, names_each_resident_and_module_pattern_once_and_reports_what_it_closes_or_that_none_runs) {
    for (const auto list : {std::span<const wchar_t* const>(resident_process_names), std::span<const wchar_t* const>(shell_extension_modules)}) {
        std::set<std::wstring> names;
        for (const wchar_t* name : list) names.insert(name ? name : L"");
        EXPECT_EQ(names.size(), list.size());
        EXPECT_FALSE(names.contains(L""));
    }
    EXPECT_EQ(shutdown_report(L"Resident processes", {}), L"Resident processes: none running.");
    EXPECT_EQ(shutdown_report(L"Shell extension hosts", {12, 4096}), L"Shell extension hosts: closing 12 4096");
}

TEST(dialog_hook, the_mode_and_the_lists_decide_which_processes_are_served) {
    const dialog_settings all_except{L"all-except", {L"notepad.exe"}, {L"chrome.exe", L"Steam.exe"}};
    const struct { dialog_settings settings; const wchar_t* image; bool served; } cases[] = {
        {all_except, L"notepad.exe", true}, {all_except, L"chrome.exe", false},
        {all_except, L"explorer.exe", false}, {all_except, L"", false},
        {{L"OFF", {L"notepad.exe"}, {}}, L"notepad.exe", false},
        {{L"allowlist", {L"notepad.exe"}, {}}, L"notepad.exe", true},
        {{L"AllowList", {L"notepad.exe"}, {}}, L"wordpad.exe", false},  // modes and names compare without case
        {{L"allowlist", {L"Zoom.exe"}, {}}, L"zOOM.EXE", true},
        {{L"allowlist", {L"chrome.exe"}, {L"chrome.exe"}}, L"chrome.exe", true},  // exclusions do not apply
        {{L"sometimes", {}, {L"x.exe"}}, L"x.exe", false},  // an unknown mode is all-except
    };
    for (const auto& c : cases) EXPECT_EQ(dialog_selected(c.settings, c.image), c.served) << testing::PrintToString(c.settings.mode + L" " + c.image);
}

TEST(dialog_hook, a_crash_is_an_nt_error_or_a_breakpoint_but_not_ctrl_c_and_is_recorded_with_its_time) {
    const struct { uint32_t code; bool crash; } cases[] = {
        {0xC0000005, true}, {0xC000013A, false}, {0x80000003, true}, {0x80000001, false},
        {1, false},         {0xFFFFFFFF, true},  {0x40000000, false}, {0, false},
    };
    for (const auto& c : cases) EXPECT_EQ(is_crash_exit(c.code), c.crash) << std::hex << c.code;
    EXPECT_EQ(crash_record({2026, 3, 4, 5, 6, 7}, 0xC0000005), L"2026-03-04 05:06:07 exit 0xC0000005");
    EXPECT_EQ(crash_record({2026, 11, 24, 16, 30, 59}, 1), L"2026-11-24 16:30:59 exit 0x00000001");
    EXPECT_EQ(inject_dialog_arguments(0x1A2B0), L"inject-dialog 0x1A2B0");
}

// The defaults: all-except with the browsers and launchers out, or Notepad alone in allowlist mode.
TEST(dialog_hook, settings_default_to_all_except_the_listed_programs_and_an_absent_app_serves_none) {
    settings_sandbox sandbox;
    const auto read = [&](std::string_view status, std::string_view dialog_settings_json, std::string_view app = "context-menu-replacement") {
        sandbox.load(document_with_settings(dialog_settings_json, status, app));
        dialog_settings d;
        return read_dialog_settings(sandbox.file(), d) ? std::optional(d) : std::nullopt;
    };
    const auto defaults = read("enabled", "{}");
    ASSERT_TRUE(defaults);
    for (const wchar_t* excluded : {L"chrome.exe", L"beservice.exe", L"battle.net.exe"}) {
        EXPECT_FALSE(dialog_selected(*defaults, excluded)) << excluded;
    }
    EXPECT_TRUE(dialog_selected(*defaults, L"wordpad.exe"));
    const auto allowlist = read("enabled", R"({"dialogs":{"mode":"allowlist","excludedProcessNames":"x"}})");
    ASSERT_TRUE(allowlist);
    EXPECT_EQ(allowlist->allowed, std::vector<std::wstring>{L"notepad.exe"});
    EXPECT_EQ(allowlist->excluded.size(), 14u) << "not an array: the default";
    EXPECT_FALSE(read("disabled", "{}"));
    EXPECT_FALSE(read("enabled", "{}", "tessary")) << "no record of the app: no hook";
}

TEST(dialog_hook, serves_only_processes_at_the_trays_own_integrity_outside_app_containers) {
    EXPECT_TRUE(integrity_allows(0x2000, 0x2000, false));
    EXPECT_FALSE(integrity_allows(0x2000, 0x3000, false)) << "an elevated program";
    EXPECT_FALSE(integrity_allows(0x3000, 0x2000, false)) << "a program below an elevated tray";
    EXPECT_FALSE(integrity_allows(0x1000, 0x1000, true)) << "an AppContainer";
}
