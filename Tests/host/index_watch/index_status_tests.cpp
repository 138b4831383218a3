#include "index_watch/index_status.h"

#include <gtest/gtest.h>

using namespace index_watch;

constexpr uint64_t limit = 10800000, t0 = 1000, t1 = t0 + limit;  // three hours of active time; moments

// Statuses: 1 unavailable, 2 in progress, 4 complete, 8 stuck.
TEST(index_status, follows_the_waiting_count_and_stalls_when_nothing_moves_for_the_limit) {
    const tray_state fresh;  // before the first sample
    EXPECT_EQ(std::tuple(fresh.indexing_status, fresh.last_items_to_index, fresh.sampling_in_flight, fresh.prompt_shown,
                         fresh.prompt_open), std::tuple(4u, -1, false, false, false));
    // A count sample, or with `power_event` set, a power event.
    struct step { int32_t items, total; uint64_t at; uint32_t power_event = 0; };
    const struct { const char* name; std::vector<step> steps; uint32_t status; } cases[] = {
        {"nothing waits any more", {{5, 1000, t0}, {0, 1000, t1 + limit}}, 4},
        {"unreadable after a stall", {{5, 1000, t0}, {5, 1000, t1}, {-1, 1000, t1}}, 1},
        {"a move at clock zero sets no baseline", {{5, 1000, 0}, {5, 1000, t1}}, 2},
        {"a resume restarts the clock", {{5, 1000, t0}, {0, 0, t0 + 1, 7}, {5, 1000, t1}}, 2},
        {"so does the other resume", {{5, 1000, t0}, {0, 0, t0 + 1, 18}, {5, 1000, t1}}, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        tray_state s{.sampling_in_flight = true};
        for (const auto& x : c.steps) {
            if (x.power_event != 0) on_power_event(s, x.power_event, x.at);
            else EXPECT_EQ(on_index_counts(s, x.items, x.total, x.at, limit), s.indexing_status);
        }
        EXPECT_EQ(std::pair(s.indexing_status, s.sampling_in_flight), std::pair(c.status, false));
    }
}

TEST(stall_prompt, comes_once_per_stall_when_nothing_else_is_up_and_restart_restarts_the_clock) {
    tray_state s;
    const auto sample = [&s](int32_t items, uint64_t at) { return on_index_counts(s, items, 1000, at, limit); };
    sample(5, t0), sample(5, t1);
    EXPECT_FALSE(begin_stall_prompt(s, true)) << "not over the tray menu";
    ASSERT_TRUE(begin_stall_prompt(s, false) && s.prompt_open);
    EXPECT_FALSE(end_stall_prompt(s, 2, t1)) << "Not now";
    EXPECT_FALSE(sample(5, t1 + limit) != 8 || begin_stall_prompt(s, false)) << "once per stall";
    EXPECT_FALSE(sample(4, t1 + limit) != 2 || begin_stall_prompt(s, false)) << "a move is no stall";
    EXPECT_TRUE(sample(4, t1 + 2 * limit) == 8 && begin_stall_prompt(s, false)) << "but allows a new prompt";
    EXPECT_TRUE(end_stall_prompt(s, 1, t1 + 2 * limit));
    EXPECT_EQ(sample(4, t1 + 3 * limit - 1), 2u) << "Restart restarts the clock";
    EXPECT_FALSE(sample(4, t1 + 3 * limit) != 8 || begin_stall_prompt(s, false)) << "and answers the stall";
}

TEST(stall_prompt, words_the_limit_in_whole_hours_or_else_minutes) {
    const std::pair<uint64_t, std::wstring> cases[] = {
        {10800000, L"3 hours"}, {3600000, L"1 hour"}, {5400000, L"90 minutes"}, {60000, L"1 minute"}, {59999, L"0 minutes"}};
    for (const auto& [ms, text] : cases) EXPECT_EQ(stall_duration_text(ms), text) << ms;
    EXPECT_EQ(stall_prompt_text(1234567, 10800000),
              L"Windows Search indexing appears to be stuck: 1234567 item(s) are waiting to be indexed and no progress "
              L"has been made in the last 3 hours of active use.\n\nDo you want to restart the Windows Search service "
              L"to get indexing going again? Windows may ask you to approve an administrator prompt.");
}
