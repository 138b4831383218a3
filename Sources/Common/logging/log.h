#pragma once

#include "logging/log_format.h"
#include "logging/plain_text_logger.h"
#include "platform/string_conversion.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <iterator>
#include <string>
#include <utility>

// The one logging call: logging::log(log_severity::info, "Started {}", name). Wide and narrow
// format strings give identical lines in the file.
namespace logging {

// The prefix is built before the message, so the time stamp is the time of the call.
std::string line_prefix(log_severity level);

// A log call never throws, so that the catch blocks of thread entries and window procedures may log:
// a line that cannot be built for want of memory is lost.
template <class... Args>
void log(log_severity level, fmt::format_string<Args...> format, Args&&... args) noexcept {
    try {
        std::string line = line_prefix(level);
        fmt::format_to(std::back_inserter(line), format, std::forward<Args>(args)...);
        process_logger().write(std::string_view(line));
    } catch (...) {
    }
}

template <class... Args>
void log(log_severity level, fmt::wformat_string<Args...> format, Args&&... args) noexcept {
    try {
        std::string line = line_prefix(level);
        line += to_utf8(fmt::format(format, std::forward<Args>(args)...));
        process_logger().write(std::string_view(line));
    } catch (...) {
    }
}

}  // namespace logging
