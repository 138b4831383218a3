#include "logging/log.h"

#include "platform/process_identity.h"

namespace logging {

std::string line_prefix(log_severity level) {
    return format_log_prefix(to_local_time(std::chrono::system_clock::now()), current_process_id(),
                             current_thread_id(), static_cast<uint32_t>(level));
}

}  // namespace logging
