#include "explorer/start_location.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

namespace explorer {

namespace {
constexpr uint32_t FLAG_BYTES = 4;
constexpr uint32_t WISH_BYTES = 1024;
constexpr uint32_t TARGET_BYTES = 128;

std::optional<uint32_t> read_flag(registry_port& registry) {
    return as_dword(registry.query(hive::current_user, SUITE_KEY, START_MONITOR_VALUE, FLAG_BYTES));
}
}  // namespace

bool start_location_enabled(registry_port& registry) { return read_flag(registry).value_or(0) != 0; }

void adopt_starting_location_flag(registry_port& registry, const log_line& log) {
    if (read_flag(registry)) return;  // the migration has run
    const bool wanted =
        as_string(registry.query(hive::current_user, SUITE_KEY, START_LOCATION_VALUE, WISH_BYTES)) == L"search-filters";
    const bool legacy =
        as_string(registry.query(hive::current_user, LEGACY_OVERRIDE_KEY, L"", WISH_BYTES)) == LEGACY_OVERRIDE_COMMAND &&
        as_string(registry.query(hive::current_user, LEGACY_OVERRIDE_KEY, L"DelegateExecute", WISH_BYTES)) == L"";
    if (const uint32_t error = registry.open_for_write(SUITE_KEY, true); error != 0) {
        // Nothing is deleted, so the next start tries the whole migration again.
        log(log_severity::warning, fmt::format(L"[navigation-start] Could not record the starting location flag: {}", error));
        return;
    }
    const uint32_t flag = legacy || wanted ? 1 : 0;
    registry.set_dword(SUITE_KEY, START_MONITOR_VALUE, flag);
    if (legacy) {
        registry.delete_value(LEGACY_OVERRIDE_KEY, L"");
        registry.delete_value(LEGACY_OVERRIDE_KEY, L"DelegateExecute");
    }
    log(log_severity::info, fmt::format(L"[navigation-start] Adopted the starting location flag: {} (legacy override {})",
                                        flag, legacy ? L"retired" : L"absent"));
}

start_target chosen_start_target(registry_port& registry) {
    if (as_string(registry.query(hive::current_user, SUITE_KEY, START_LOCATION_VALUE, TARGET_BYTES)) == L"quick-pins") {
        return {QUICK_PINS_LOCATION, L"Quick pins"};
    }
    return {SEARCH_FILTERS_LOCATION, L"Search filters"};
}

bool navigate_new_window_if_at_default(start_browser& browser, registry_port& registry, const log_line& log) {
    const auto busy = browser.busy();
    if (!busy || *busy) return false;
    switch (browser.location()) {
    case window_location::not_ready:
    case window_location::desktop_root:
        return false;
    case window_location::elsewhere:
        return true;
    case window_location::default_page:
        break;
    }
    if (!start_location_enabled(registry)) return true;
    const start_target target = chosen_start_target(registry);
    const int32_t result = browser.browse_to(target.parsing_name);
    if (result >= 0) {
        log(log_severity::info, fmt::format(L"[navigation-start] Opened {} in a new Explorer window", target.display_name));
    } else {
        log(log_severity::warning, fmt::format(L"[navigation-start] Could not open {}: 0x{:X}", target.display_name,
                                               static_cast<uint32_t>(result)));
    }
    return true;
}

}  // namespace explorer
