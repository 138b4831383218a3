#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// The public version check: the server's text against the running build's, as one status number.
namespace updates {

// update_status: one of these. An update is available when status & 28; the mask keeps a bit that
// nothing produces, as the menu's test of & 24 does.
constexpr uint32_t running_newer = 1, up_to_date = 2, minor_update = 4, major_update = 8;
constexpr uint32_t UPDATE_AVAILABLE_MASK = 28;

using version_numbers = std::array<int32_t, 4>;

// "v1.2.3" or "1.2.3.4": one to four numbers of digits alone, each fitting 32 signed bits; missing
// ones are 0. A trailing dot adds nothing, an empty part fails. `out` is zeroed first.
bool parse_version(std::string_view text, version_numbers& out);

// The status of `public_text` against `running_text`; any empty or unparsable text is up_to_date.
uint32_t compare_versions(std::string_view public_text, std::string_view running_text);

// The server's body without a UTF-8 byte-order mark and without blanks, tabs and line ends around it.
std::string clean_version_body(std::string body);

// "v" and the build's four numbers, the last always 0.
std::wstring current_version_string();

// Where the public version text and the installers are, on the build's web host.
std::wstring version_text_url();
std::wstring download_base_url();

}  // namespace updates
