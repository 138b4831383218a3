#pragma once

#include "explorer/registry_port.h"

#include <cstdint>
#include <optional>
#include <string>

// Whether new Explorer windows go to one of the suite's nodes, and which, as the user's registry says.
namespace explorer {

constexpr wchar_t SUITE_KEY[] = L"Software\\Kestrane\\Veldrake\\Pathlume";
constexpr wchar_t START_MONITOR_VALUE[] = L"ExplorerStartMonitor";
constexpr wchar_t START_LOCATION_VALUE[] = L"ExplorerStartLocation";
// An older build's replacement of the command of Explorer's open-new-window entry.
constexpr wchar_t LEGACY_OVERRIDE_KEY[] =
    L"Software\\Classes\\CLSID\\{52205fd8-5dfb-447d-801a-d0b52f2e83e1}\\shell\\OpenNewWindow\\command";
constexpr wchar_t LEGACY_OVERRIDE_COMMAND[] = L"explorer.exe \"shell:::{249AE234-08DF-4686-AAF3-5D80A15493BE}\"";

// Windows' default start pages, and the suite's two nodes.
constexpr wchar_t HOME_LOCATION[] = L"shell:::{F874310E-B6B7-47DC-BC84-B9E6B38F5903}";
constexpr wchar_t QUICK_ACCESS_LOCATION[] = L"shell:::{679F85CB-0220-4080-B29B-5540CC05AAB6}";
constexpr wchar_t SEARCH_FILTERS_LOCATION[] = L"shell:::{249AE234-08DF-4686-AAF3-5D80A15493BE}";
constexpr wchar_t QUICK_PINS_LOCATION[] = L"shell:::{EA1CD75E-C7FD-4FF7-B0A1-22FE9B594A6E}";

// Read afresh for each use, so that a change counts from the next new window.
bool start_location_enabled(registry_port& registry);

// On the first start only (the flag absent): writes the flag from the user's old wish and retires the
// older build's override, once.
void adopt_starting_location_flag(registry_port& registry, const log_line& log);

struct start_target {
    const wchar_t* parsing_name;
    const wchar_t* display_name;
};
// "quick-pins" selects Quick pins; any other value, or none, Search filters.
start_target chosen_start_target(registry_port& registry);

// Where a new window's view stands, as far as the start step cares.
enum class window_location { not_ready, desktop_root, default_page, elsewhere };

// The browser of one new window, as the start step uses it.
class start_browser {
public:
    virtual ~start_browser() = default;
    // Nothing when the question fails.
    virtual std::optional<bool> busy() = 0;
    virtual window_location location() = 0;
    // The platform's result of parsing the name and browsing to it in the same window.
    virtual int32_t browse_to(const wchar_t* parsing_name) = 0;
};

// True when the start step is finished for this window, false when it must be tried again. A window
// opened on a chosen folder is left there; a failed redirect is not tried again.
bool navigate_new_window_if_at_default(start_browser& browser, registry_port& registry, const log_line& log);

}  // namespace explorer
