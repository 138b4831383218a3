#include "logging/log_format.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <ctime>

std::string_view level_name(uint32_t level) noexcept {
    switch (level) {
        case 0: return "DEBUG";
        case 1: return "INFO";
        case 2: return "WARNING";
        case 3: return "ERROR";
        case 4: return "CRITICAL";
        default: return "UNKNOWN";
    }
}

local_timestamp to_local_time(std::chrono::system_clock::time_point when) {
    using namespace std::chrono;
    const auto since_epoch = duration_cast<duration<int64_t, std::ratio<1, 10000000>>>(when.time_since_epoch());
    auto whole_seconds = since_epoch.count() / 10000000;
    auto ticks = since_epoch.count() % 10000000;
    if (ticks < 0) {
        ticks += 10000000;
        --whole_seconds;
    }
    const std::time_t seconds = static_cast<std::time_t>(whole_seconds);
    std::tm parts{};
#ifdef _WIN32
    localtime_s(&parts, &seconds);
#else
    localtime_r(&seconds, &parts);
#endif
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
            parts.tm_min,         parts.tm_sec,     static_cast<uint32_t>(ticks)};
}

std::string format_log_prefix(const local_timestamp& t, uint32_t process_id, uint32_t thread_id, uint32_t level) {
    return fmt::format("[{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:07}] [P:{} T:{}] [{}] ", t.year, t.month, t.day, t.hour,
                       t.minute, t.second, t.ticks, process_id, thread_id, level_name(level));
}

std::wstring log_file_name(std::wstring_view subject, const local_timestamp& date) {
    return fmt::format(L"{} {:04}-{:02}-{:02}.log", subject, date.year, date.month, date.day);
}
