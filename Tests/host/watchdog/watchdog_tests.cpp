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

struct timeline {
    const char* name;
    std::vector<span> stalls;       // the window thread handles nothing inside these
    std::vector<span> failed_posts;  // PostMessageW fails at ticks inside these
    uint64_t stop_at;                // the stop event is set then
    uint64_t dump_ms;                // how long writing a dump takes
};

// The thread against a window thread that answers every ping the moment it is not stalled.
class scripted_platform final : public watchdog_port {
public:
    explicit scripted_platform(const timeline& t) : t_(t) {}

    bool wait_tick() override {
        if (clock_ + TICK_MS > t_.stop_at) return false;
        clock_ += TICK_MS;
        return true;
    }
    uint64_t now() override { return clock_; }
    bool take_answered() override {
        if (in_flight_ && answer_time(posted_at_) <= clock_) {
            in_flight_ = false;
            answered_ = true;
        }
        return std::exchange(answered_, false);
    }
    bool post_ping() override {
        ++posts;
        answered_ = false;
        for (const span& f : t_.failed_posts)
            if (f.holds(clock_)) return false;
        in_flight_ = true;
        posted_at_ = clock_;
        return true;
    }
    void log(const tick_line& line) override {
        events.push_back(fmt::format("{} {}", level_name(static_cast<uint32_t>(line.level)), line.text));
    }
    void write_dump() override {
        events.push_back("dump");
        clock_ += t_.dump_ms;
    }

    std::vector<std::string> events;
    int posts = 0;

private:
    uint64_t answer_time(uint64_t posted) const {
        for (const span& s : t_.stalls)
            if (s.holds(posted)) return s.to;
        return posted;
    }

    const timeline& t_;
    uint64_t clock_ = 0;
    bool in_flight_ = false, answered_ = false;
    uint64_t posted_at_ = 0;
};

std::string hang(int ms) { return fmt::format("ERROR [watchdog] UI thread has not handled a posted message for {} ms", ms); }
std::string back(int ms) { return fmt::format("WARNING [watchdog] UI thread responsive again after {} ms", ms); }

}  // namespace

// Pings go out at every tick while none is in flight; a stall begins just after the tick at 1000 answered.
TEST(watchdog, reports_a_hang_once_dumps_at_most_every_ten_minutes_and_reports_the_recovery) {
    const struct {
        timeline t;
        std::vector<std::string> events;
        int posts;
    } cases[] = {
        {{"9 s stall", {{1500, 10500}}, {}, 30000, 0}, {}, 22},
        {{"12 s stall", {{1500, 13500}}, {}, 20000, 0}, {hang(10000), "dump", back(12000)}, 9},
        // Under Wine a dump takes seconds; the recovery is seen at the first tick after it.
        {{"12 s stall, a 7 s dump", {{1500, 13500}}, {}, 25000, 7000}, {hang(10000), "dump", back(18000)}, 8},
        {{"two hangs five minutes apart", {{301500, 313500}, {601500, 613500}}, {}, 620000, 0},
         {hang(10000), "dump", back(12000), hang(10000), back(12000)},
         620 - 2 * 11},
        {{"two hangs ten minutes apart", {{1500, 13500}, {601500, 613500}}, {}, 620000, 0},
         {hang(10000), "dump", back(12000), hang(10000), "dump", back(12000)},
         620 - 2 * 11},
        {{"posts fail for 14 s after two answers", {}, {{3000, 17000}}, 20000, 0}, {}, 20},
        {{"stop during the first second", {}, {}, 999, 0}, {}, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.t.name);
        scripted_platform platform(c.t);
        run_watchdog(platform);
        EXPECT_EQ(platform.events, c.events);
        EXPECT_EQ(platform.posts, c.posts);
    }
}

TEST(watchdog, prunes_all_but_the_two_newest_hang_dumps_and_nothing_else) {
    using time = std::filesystem::file_time_type;
    const auto at = [](int s) { return std::optional<time>(time(std::chrono::seconds(s))); };
    const std::optional<time> unreadable;
    const struct {
        const char* name;
        std::vector<folder_entry> entries;
        std::vector<std::filesystem::path> deleted;
    } cases[] = {
        {"two dumps stay", {{"Logs/Tray hang a.dmp", at(1)}, {"Logs/Tray hang b.dmp", at(2)}}, {}},
        {"four dumps: the two oldest go, oldest first",
         {{"Logs/Tray hang a.dmp", at(40)}, {"Logs/Tray hang b.dmp", at(10)}, {"Logs/Tray hang c.dmp", at(30)},
          {"Logs/Tray hang d.dmp", at(20)}},
         {"Logs/Tray hang b.dmp", "Logs/Tray hang d.dmp"}},
        {"names are matched exactly",
         {{"Logs/tray hang a.dmp", at(1)}, {"Logs/Tray hang b.DMP", at(1)}, {"Logs/Tray hangc.dmp", at(1)},
          {"Logs/Tray hang d.dmp.txt", at(1)}, {"Logs/System Tray 2026-11-13.log", at(1)},
          {"Logs/Tray hang e.dmp", at(5)}, {"Logs/Tray hang f.dmp", at(6)}, {"Logs/Tray hang g.dmp", at(7)}},
         {"Logs/Tray hang e.dmp"}},
        {"equal times go by path",
         {{"Logs/Tray hang c.dmp", at(3)}, {"Logs/Tray hang a.dmp", at(3)}, {"Logs/Tray hang b.dmp", at(3)}},
         {"Logs/Tray hang a.dmp"}},
        {"unreadable times are oldest, by path among themselves",
         {{"Logs/Tray hang a.dmp", at(1)}, {"Logs/Tray hang z.dmp", unreadable}, {"Logs/Tray hang y.dmp", unreadable},
          {"Logs/Tray hang b.dmp", at(2)}},
         {"Logs/Tray hang y.dmp", "Logs/Tray hang z.dmp"}},
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
