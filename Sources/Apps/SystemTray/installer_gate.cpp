#include "installer_gate.h"

namespace installer_gate {

namespace {
constexpr uint32_t error_access_denied = 5;
}

std::optional<uint32_t> process_to_inspect(std::optional<uint32_t> recorded_process,
                                           std::optional<uint64_t> recorded_creation) {
    if (!recorded_process || *recorded_process == 0 || !recorded_creation) return std::nullopt;
    return recorded_process;
}

bool running_when_open_failed(uint32_t last_error) noexcept { return last_error == error_access_denied; }

bool running(std::optional<uint64_t> creation_time, uint64_t recorded_creation, bool still_alive) noexcept {
    if (!creation_time) return true;
    return *creation_time == recorded_creation && still_alive;
}

}  // namespace installer_gate
