#include "watchdog/hang_dumps.h"
#include "watchdog/watchdog_loop.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace watchdog;

namespace {

struct span {
    uint64_t from, to;  // [from, to) in ms since the thread started
    bool holds(uint64_t t) const { return from <= t && t < to; }
};

// The thread against a window thread that answers each ping as soon as it is not stalled. Stalls and
// failing posts are spans of time; the stop event is set at stop_at; a dump takes dump_ms.
struct scripted_platform final : watchdog_port {
    std::vector<span> stalls, failed_posts;
    uint64_t stop_at = 0, dump_ms = 0, clock = 0, posted_at = 0;
    bool in_flight = false, answered = false;
    std::vector<std::string> events;
    int posts = 0;

    bool wait_tick() override { return clock + TICK_MS <= stop_at && (clock += TICK_MS); }
    uint64_t now() override { return clock; }
    bool take_answered() override {
        uint64_t answer_at = posted_at;
        for (const span& s : stalls) answer_at = s.holds(posted_at) ? s.to : answer_at;
        if (in_flight && answer_at <= clock) in_flight = false, answered = true;
        return std::exchange(answered, false);
    }
    bool post_ping() override {
        ++posts;
        answered = false;
        for (const span& f : failed_posts)
            if (f.holds(clock)) return false;
        return in_flight = true, posted_at = clock, true;
    }
    void log(const tick_line& line) override {
        events.push_back(fmt::format("{} {}", level_name(static_cast<uint32_t>(line.level)), line.text));
    }
    void write_dump() override { events.push_back("dump"), clock += dump_ms; }
};

std::string hang(int ms) { return fmt::format("ERROR [watchdog] UI thread has not handled a posted message for {} ms", ms); }
std::string back(int ms) { return fmt::format("WARNING [watchdog] UI thread responsive again after {} ms", ms); }

}  // namespace

// Ticks fall on whole seconds; a stall begins just after an answered ping.
TEST(watchdog, reports_a_hang_once_dumps_at_most_every_ten_minutes_and_reports_the_recovery) {
    const struct {
        const char* name;
        std::vector<span> stalls, failed_posts;
        uint64_t stop_at, dump_ms;
        std::vector<std::string> events;
        int posts;
    } cases[] = {
        {"12 s stall", {{1500, 13500}}, {}, 20000, 0, {hang(10000), "dump", back(12000)}, 9},
        // As under Wine: the recovery is seen at the first tick after a 7 s dump.
        {"12 s stall, 7 s dump", {{1500, 13500}}, {}, 25000, 7000, {hang(10000), "dump", back(18000)}, 8},
        {"two hangs five minutes apart", {{301500, 313500}, {601500, 613500}}, {}, 620000, 0,
         {hang(10000), "dump", back(12000), hang(10000), back(12000)}, 620 - 22},
        {"two hangs ten minutes apart", {{1500, 13500}, {601500, 613500}}, {}, 620000, 0,
         {hang(10000), "dump", back(12000), hang(10000), "dump", back(12000)}, 620 - 22},
        {"posts fail for 14 s after two answers", {}, {{3000, 17000}}, 20000, 0, {}, 20},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        scripted_platform platform;
        platform.stalls = c.stalls, platform.failed_posts = c.failed_posts;
        platform.stop_at = c.stop_at, platform.dump_ms = c.dump_ms;
        run_watchdog(platform, 10000);
        EXPECT_EQ(platform.events, c.events);
        EXPECT_EQ(platform.posts, c.posts);
    }
}

TEST(watchdog, prunes_all_but_the_two_newest_hang_dumps_and_nothing_else) {
    const auto dump = [](const char* name, std::optional<int> seconds) {
        using time = std::filesystem::file_time_type;
        return folder_entry{std::filesystem::path("L") / name,
                            seconds ? std::optional<time>(time(std::chrono::seconds(*seconds))) : std::nullopt};
    };
    const struct {
        const char* name;
        std::vector<folder_entry> entries;
        std::vector<std::filesystem::path> deleted;
    } cases[] = {
        {"four: the two oldest go, oldest first",
         {dump("Tray hang a.dmp", 40), dump("Tray hang b.dmp", 10), dump("Tray hang c.dmp", 30),
          dump("Tray hang d.dmp", 20)},
         {"L/Tray hang b.dmp", "L/Tray hang d.dmp"}},
        {"names match exactly",
         {dump("tray hang a.dmp", 1), dump("Tray hang b.DMP", 1), dump("Tray hangc.dmp", 1),
          dump("Tray hang d.dmp.txt", 1), dump("System Tray 2026-11-13.log", 1), dump("Tray hang e.dmp", 5),
          dump("Tray hang f.dmp", 6), dump("Tray hang g.dmp", 7)},
         {"L/Tray hang e.dmp"}},
        {"unreadable times first, by path",
         {dump("Tray hang a.dmp", 1), dump("Tray hang z.dmp", {}), dump("Tray hang y.dmp", {}), dump("Tray hang b.dmp", 2)},
         {"L/Tray hang y.dmp", "L/Tray hang z.dmp"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(hang_dumps_to_delete(c.entries), c.deleted);
    }
}

TEST(watchdog, names_a_dump_by_its_local_second) {
    EXPECT_EQ(hang_dump_name({2026, 11, 13, 18, 53, 19, 1234567}), L"Tray hang 2026-11-13_18.53.19.dmp");
    EXPECT_EQ(hang_dump_name({2027, 1, 2, 3, 4, 5, 0}), L"Tray hang 2027-01-02_03.04.05.dmp");
}
