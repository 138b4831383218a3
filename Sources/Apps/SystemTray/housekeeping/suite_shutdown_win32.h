#pragma once

#include <functional>
#include <string>

namespace housekeeping {

using shutdown_progress = std::function<void(const std::wstring&)>;

// Ends the suite's residents, then the hosts of its shell extensions; reports to `progress` if set.
void shutdown_suite(const shutdown_progress& progress);

}  // namespace housekeeping
