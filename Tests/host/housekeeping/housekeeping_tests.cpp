#include "housekeeping/reconcile.h"
#include "housekeeping/suite_shutdown.h"

#include <gtest/gtest.h>

using namespace housekeeping;

TEST(reconcile, retries_a_failed_controller_nine_times_and_stops_at_its_first_success) {
    const struct { uint32_t attempt; int32_t exit_code; reconcile_step step; } cases[] = {
        {1, 0, reconcile_step::done},   {1, 1, reconcile_step::retry},  {9, -1, reconcile_step::retry},
        {10, 5, reconcile_step::give_up}, {10, 0, reconcile_step::done},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.attempt * 100 + c.exit_code);
        EXPECT_EQ(after_reconcile_attempt(c.attempt, c.exit_code), c.step);
    }
}

TEST(reconcile, only_created_windows_themselves_of_dialog_or_explorer_classes_are_taken) {
    constexpr uint32_t create = 0x8000;
    const struct { window_event e; event_use use; } cases[] = {
        {{create, true, 0, 0, L"CabinetWClass"}, event_use::explorer_window},
        {{create, true, 0, 0, L"Progman"}, event_use::explorer_window},
        {{create, true, 0, 0, L"WorkerW"}, event_use::explorer_window},
        {{create, true, 0, 0, L"Shell_TrayWnd"}, event_use::explorer_window},
        {{create, true, 0, 0, L"#32770"}, event_use::dialog},
        {{create, true, 0, 0, L"cabinetwclass"}, event_use::ignore},  // compared exactly
        {{create, true, 0, 0, L"Shell_SecondaryTrayWnd"}, event_use::ignore},
        {{0x8001, true, 0, 0, L"CabinetWClass"}, event_use::ignore},
        {{create, false, 0, 0, L"CabinetWClass"}, event_use::ignore},
        {{create, true, -4, 0, L"CabinetWClass"}, event_use::ignore},
        {{create, true, 0, 1, L"#32770"}, event_use::ignore},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.e.class_name) + " " + std::to_string(c.e.event));
        EXPECT_EQ(classify_window_event(c.e), c.use);
    }
}

// Recorded windows of one session: each explorer.exe process is reconciled at its first window only.
TEST(reconcile, each_explorer_process_asks_once_and_an_unreadable_name_asks_again_later) {
    std::vector<uint32_t> seen;
    const struct { uint32_t pid; const wchar_t* image; bool first; } windows[] = {
        {40, L"explorer.exe", true}, {40, L"explorer.exe", false}, {0, L"explorer.exe", false},
        {52, L"", false},            {52, L"explorer.exe", true},  {60, L"notepad.exe", false},
        {60, L"explorer.exe", true}, {52, L"explorer.exe", false},
    };
    for (const auto& w : windows) {
        SCOPED_TRACE(w.pid);
        EXPECT_EQ(first_sight_of_explorer(seen, w.pid, w.image), w.first);
    }
    EXPECT_EQ(seen, (std::vector<uint32_t>{40, 52, 60}));
}

TEST(suite_shutdown, reports_what_it_closes_or_that_none_runs) {
    EXPECT_EQ(shutdown_report(L"Resident processes", {}), L"Resident processes: none running.");
    EXPECT_EQ(shutdown_report(L"Shell extension hosts", {12, 4096}), L"Shell extension hosts: closing 12 4096");
}
