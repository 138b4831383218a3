#include "logging/log_format.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

TEST(log_format, prefix_has_seven_decimals_plain_ids_and_the_level_word) {
    const struct { local_timestamp when; uint32_t pid, tid, level; std::string_view expected; } cases[] = {
        {{2026, 1, 2, 3, 4, 5, 7}, 1, 2, 3, "[2026-01-02 03:04:05.0000007] [P:1 T:2] [ERROR] "},
        {{1999, 12, 31, 23, 59, 59, 9999999}, 4294967295u, 0, 9,
         "[1999-12-31 23:59:59.9999999] [P:4294967295 T:0] [UNKNOWN] "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.expected));
        EXPECT_EQ(format_log_prefix(c.when, c.pid, c.tid, c.level), c.expected);
    }
    // The words by the severities that the log calls pass.
    using enum log_severity;
    const std::pair<log_severity, std::string_view> words[] = {{debug, "DEBUG"}, {info, "INFO"}, {warning, "WARNING"},
                                                                {error, "ERROR"}, {critical, "CRITICAL"},
                                                                {log_severity(5), "UNKNOWN"}};
    for (const auto& [level, word] : words) EXPECT_EQ(level_name(static_cast<uint32_t>(level)), word);
}

TEST(log_format, file_name_carries_the_date_only) {
    EXPECT_EQ(log_file_name(L"System Tray", {2026, 11, 13, 23, 59, 59, 9999999}), L"System Tray 2026-11-13.log");
    EXPECT_EQ(log_file_name(L"System Tray", {2027, 1, 1, 0, 0, 0, 0}), L"System Tray 2027-01-01.log");
}

// 1'700'000'000 is 2023-11-14 22:13:20 UTC: the 20th second and November in every time zone.
TEST(log_format, local_time_keeps_the_100ns_ticks_of_the_second) {
    using namespace std::chrono;
    const auto base = system_clock::time_point(seconds(1'700'000'000));
    for (const auto& [ns, ticks] : {std::pair{0, 0u}, {100, 1u}, {123'456'700, 1'234'567u}, {999'999'999, 9999999u}}) {
        SCOPED_TRACE(fmt::format("{} ns", ns));
        const local_timestamp t = to_local_time(base + duration_cast<system_clock::duration>(nanoseconds(ns)));
        EXPECT_EQ(t.ticks, ticks);
        EXPECT_EQ(t.second, 20);
        EXPECT_EQ(std::pair(t.year, t.month), std::pair(2023, 11));
    }
}
