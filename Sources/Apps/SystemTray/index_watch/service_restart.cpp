#include "index_watch/service_restart.h"

#include "logging/log.h"

namespace index_watch {

namespace {

constexpr uint32_t SERVICE_STOPPED = 1;
constexpr uint32_t ERROR_SERVICE_ALREADY_RUNNING = 1056;
constexpr uint32_t ERROR_SERVICE_NOT_ACTIVE = 1062;
constexpr uint32_t poll_pause_ms = 500;
constexpr int most_polls = 60;
constexpr uint32_t elevated_wait_ms = 60000;

// Leaves the service handle open only on success; the manager stays open for the elevated road.
bool restart_directly(search_service_port& port) {
    uint32_t state = 0;
    const uint32_t stop_error = port.stop_service(state);
    if (stop_error != 0 && stop_error != ERROR_SERVICE_NOT_ACTIVE) {
        logging::log(log_severity::error, "restart_search_service: ControlService stop failed. Error={}", stop_error);
        port.close_service();
        return false;
    }
    // Running out of polls or a failed query still tries the start.
    for (int poll = 0; state != SERVICE_STOPPED && poll < most_polls; ++poll) {
        port.sleep_ms(poll_pause_ms);
        const std::optional<uint32_t> queried = port.query_state();
        if (!queried) break;
        state = *queried;
    }
    const uint32_t start_error = port.start_service();
    if (start_error != 0 && start_error != ERROR_SERVICE_ALREADY_RUNNING) {
        logging::log(log_severity::error, "restart_search_service: StartService failed. Error={}", start_error);
        port.close_service();
        return false;
    }
    return true;
}

// Whether the elevated command failed: not launched, or ended in time with a failure. A command
// still running after the wait may yet succeed.
bool elevated_restart_failed(search_service_port& port) {
    const search_service_port::elevated_start launch = port.start_elevated();
    if (!launch.launched) {
        logging::log(log_severity::error, "restart_search_service: Elevated restart launch failed. Error={}",
                     launch.error);
        return true;
    }
    if (!launch.has_process) return false;
    const search_service_port::elevated_end end = port.wait_elevated(elevated_wait_ms);
    return end.ended && (end.read_failed || end.exit_code != 0);
}

}  // namespace

bool restart_search_service(search_service_port& port) {
    // No rights to open the service is the common case, not an error: no log line.
    if (port.open_service() && restart_directly(port)) {
        port.close_service();
        port.close_manager();
        return true;
    }
    const bool failed = elevated_restart_failed(port);
    port.close_manager();
    if (failed) {
        port.show_failure(
            L"The Windows Search service could not be restarted. You can restart it manually from the Services app "
            L"(services.msc) or by restarting your computer.");
    }
    return !failed;
}

}  // namespace index_watch
