#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

enum class log_severity : uint32_t { debug = 0, info = 1, warning = 2, error = 3, critical = 4 };

// "DEBUG" .. "CRITICAL"; any other value is "UNKNOWN".
std::string_view level_name(uint32_t level) noexcept;

// A moment in the machine's time zone, with the 100 ns ticks of its second.
struct local_timestamp {
    int year = 1970, month = 1, day = 1, hour = 0, minute = 0, second = 0;
    uint32_t ticks = 0;
};

local_timestamp to_local_time(std::chrono::system_clock::time_point when);

// "[2026-11-13 18:53:19.1234567] [P:4120 T:7312] [INFO] "
std::string format_log_prefix(const local_timestamp& when, uint32_t process_id, uint32_t thread_id, uint32_t level);

// "System Tray 2026-11-13.log"
std::wstring log_file_name(std::wstring_view subject, const local_timestamp& date);
