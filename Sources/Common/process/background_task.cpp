#include "process/background_task.h"

#include "logging/log.h"
#include "platform/string_conversion.h"

#include <exception>

void run_task_logged(background_task& task) noexcept {
    try {
        task.run();
    } catch (const std::exception& e) {
        try {
            logging::log(log_severity::error, L"{} failed: {}", task.name(), to_wide(e.what()));
        } catch (...) {
        }
    } catch (...) {
        try {
            logging::log(log_severity::error, L"{} failed with unknown exception", task.name());
        } catch (...) {
        }
    }
}
