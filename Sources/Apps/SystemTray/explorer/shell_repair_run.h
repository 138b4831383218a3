#pragma once

#include "explorer/registry_port.h"

#include <optional>

namespace high_level_settings {
class settings_file;
}

// One run of the shell handler repair and the thumbnail treatment overrides, as the tray makes it at
// each start, on a thread of its own.
namespace explorer {

struct repair_choice {
    bool handlers_in_use{};  // the suite's icon overlays are on, so its handlers must stay in place
    bool suppress{};         // Explorer's thumbnail frame goes
};

// Nothing when the settings cannot be read: then neither step runs.
std::optional<repair_choice> read_repair_choice(high_level_settings::settings_file& settings);

// Both steps over the whole type table; true when something changed and the shell must be told.
// A failure ends the run with one ERROR line; what was written stays, and the shell is not told.
bool run_shell_handler_repair(registry_port& registry, const repair_choice& choice, const log_line& log);

}  // namespace explorer
