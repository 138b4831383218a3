#pragma once

#include <string>
#include <string_view>
#include <vector>

// The suite's vocabulary of file types: extensions with a leading ".", lower case, in a kept order.
// The tray reads only repair_extension_list; the others belong with it and are defined here once.
namespace explorer {

extern const std::vector<std::string> known_file_types;
// known_file_types followed by ".mp3": the types whose shell handlers the repair visits.
extern const std::vector<std::string> repair_extension_list;
extern const std::vector<std::string> embedded_metadata_types;
extern const std::vector<std::string> rich_preview_types;
extern const std::vector<std::string> photo_types;

extern const std::string_view file_types_guid;
extern const std::string_view details_property_list;
extern const std::string_view tile_property_list;
// The same five names as the tile list; the order of the comment and the keywords differs on purpose.
extern const std::string_view preview_property_list;
extern const std::string_view calendar_location_property;
extern const std::vector<std::string_view> contact_location_properties;

}  // namespace explorer
