#pragma once

#include "explorer/registry_port.h"

#include <cstdint>
#include <string>

// Explorer's own frame around image thumbnails goes when the suite's provider draws rounded corners:
// `Treatment` 0 on each image type that the suite serves, with a marker beside it, so that a later run
// removes exactly what this one set and never a `Treatment` that belongs to someone else.
namespace explorer {

constexpr wchar_t TREATMENT_MARKER[] = L"VeldrakeTreatment";

bool has_treatment_marker(registry_port& registry, const std::wstring& extension, const std::wstring& marker_name);

// The count of types whose override was set or removed.
int32_t apply_thumbnail_treatment_overrides(registry_port& registry, bool suppress, const std::wstring& class_id,
                                            const std::wstring& interface_id, const std::wstring& marker_name);

// The above with the suite's class, the thumbnail interface and the marker; a change is logged.
int32_t update_thumbnail_treatment_overrides(registry_port& registry, bool suppress, const log_line& log);

}  // namespace explorer
