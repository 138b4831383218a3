#pragma once

#include <cstdint>
#include <optional>

// The decisions of the installer gate, in the order the values are read. A process that must not
// run while the installer's maintenance lives asks these with what the platform answered.
namespace installer_gate {

// After reading the registry: the process id worth inspecting, or nothing when maintenance is not
// recorded (a failed read counts as absent; a process id of 0 means none).
std::optional<uint32_t> process_to_inspect(std::optional<uint32_t> recorded_process,
                                           std::optional<uint64_t> recorded_creation);

// When the process could not be opened: one we may not inspect counts as the maintenance process;
// any other failure means it is gone.
bool running_when_open_failed(uint32_t last_error) noexcept;

// When it was opened: running exactly when it is the recorded process (the creation time guards
// against a recycled id) and has not ended. Unknown times fail closed.
bool running(std::optional<uint64_t> creation_time, uint64_t recorded_creation, bool still_alive) noexcept;

}  // namespace installer_gate
