#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace high_level_settings {
class settings_file;
}

// The indexing status on the icon and tip of the suite's root node in Explorer's navigation pane.
// The choice is made here on the window thread; a background task writes the registry.
namespace index_watch {

constexpr wchar_t NAMESPACE_CLASS_KEY[] = L"Software\\Classes\\CLSID\\{249AE234-08DF-4686-AAF3-5D80A15493BE}";

// `value` is what the record's namespace_icon_applied holds once this selection was handed out.
struct icon_selection {
    std::wstring icon_file;  // a file name in Content\Icons beside the executable
    std::wstring tip;
    uint32_t value;
};

constexpr uint32_t namespace_icon_hidden = 0xFFFFFFFF;

icon_selection select_namespace_icon(bool display_on, uint32_t indexing_status);

// The selection to apply, or nothing when it equals `applied`; stores the new value in `applied`.
// A failed task sets `applied` back to 0, so the next sample applies it again.
std::optional<icon_selection> next_namespace_icon(uint32_t& applied, bool display_on, uint32_t indexing_status);

// Off when the user switched the status display off or disabled the app. Reloads a changed file first.
bool namespace_display_on(high_level_settings::settings_file& settings);

}  // namespace index_watch
