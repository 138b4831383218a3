#include "updates/version_check.h"

#include "platform/string_conversion.h"
#include "updates/update_site.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <limits>

namespace updates {

namespace {

bool parse_number(std::string_view part, int32_t& out) {
    if (part.empty()) return false;
    int64_t value = 0;
    for (const char c : part) {
        if (c < '0' || c > '9') return false;
        value = value * 10 + (c - '0');
        if (value > std::numeric_limits<int32_t>::max()) return false;
    }
    out = static_cast<int32_t>(value);
    return true;
}

}  // namespace

bool parse_version(std::string_view text, version_numbers& out) {
    out = {};
    if (!text.empty() && (text.front() == 'v' || text.front() == 'V')) {
        text.remove_prefix(1);
        if (text.empty()) return false;
    }
    if (text.empty()) return false;
    // Split as a stream's getline would: a trailing dot ends the text without a last empty part.
    if (text.back() == '.') text.remove_suffix(1);
    size_t count = 0;
    for (size_t start = 0;;) {
        const size_t dot = text.find('.', start);
        const std::string_view part = text.substr(start, dot == std::string_view::npos ? dot : dot - start);
        if (count == out.size() || !parse_number(part, out[count])) {
            out = {};
            return false;
        }
        ++count;
        if (dot == std::string_view::npos) return true;
        start = dot + 1;
    }
}

uint32_t compare_versions(std::string_view public_text, std::string_view running_text) {
    version_numbers published{}, running{};
    if (!parse_version(public_text, published) || !parse_version(running_text, running)) return up_to_date;
    for (size_t i = 0; i < published.size(); ++i) {
        if (published[i] > running[i]) return i == 0 ? major_update : minor_update;
        if (published[i] < running[i]) return running_newer;
    }
    return up_to_date;
}

std::string clean_version_body(std::string body) {
    if (body.size() >= 3 && body.compare(0, 3, "\xEF\xBB\xBF") == 0) body.erase(0, 3);
    constexpr const char* TRIMMED = " \n\r\t";
    const size_t first = body.find_first_not_of(TRIMMED);
    if (first == std::string::npos) return {};
    return body.substr(first, body.find_last_not_of(TRIMMED) - first + 1);
}

std::wstring current_version_string() {
    static const std::wstring version =
        fmt::format(L"v{}.{}.{}.0", VELDRAKE_VERSION_MAJOR, VELDRAKE_VERSION_MINOR, VELDRAKE_VERSION_BUILD);
    return version;
}

std::wstring version_text_url() {
    return to_wide(UPDATE_WEB_HOST) + L"/products/veldrake/download_public_version.txt";
}

std::wstring download_base_url() { return to_wide(UPDATE_WEB_HOST) + L"/products/veldrake/Downloads/Public"; }

}  // namespace updates
