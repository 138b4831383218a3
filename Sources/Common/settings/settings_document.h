#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace high_level_settings {

// One option of a component: a JSON true/false, string, number that fits an i32, or string array.
using setting_value = std::variant<bool, std::string, int32_t, std::vector<std::string>>;

// Options under their flattened names: a member of an object inside "settings" reads "parent.child".
using setting_map = std::map<std::string, setting_value, std::less<>>;

struct app_record {
    std::string app_id;
    std::wstring name;
    std::wstring version;
    std::string status;
    setting_map settings;
};

using app_map = std::map<std::string, app_record, std::less<>>;

// What one document gives. A part left empty was absent or of the wrong type, and the content
// already in memory keeps that part.
struct parsed_document {
    std::optional<std::wstring> version;
    std::optional<app_map> apps;
};

// The whole file, decoded from UTF-8 as a wide stream with the standard UTF-8 facet decodes it: a
// byte-order mark is kept, the text ends where a sequence does not decode, and where wchar_t has 16
// bits, characters beyond the Basic Multilingual Plane do not decode.
std::string read_settings_text(const std::filesystem::path& file);

// Nothing when the text does not parse or its root is not an object. The text ends at its first
// null character.
std::optional<parsed_document> parse_settings_document(const std::string& utf8);

}  // namespace high_level_settings
