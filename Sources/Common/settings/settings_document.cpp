#include "settings/settings_document.h"

#include "platform/string_conversion.h"

#include <rapidjson/document.h>

#include <codecvt>
#include <cwchar>
#include <fstream>
#include <locale>
#include <sstream>

namespace high_level_settings {
namespace {

// The parser recurses once per level; a corrupt file of deep brackets must not exhaust the stack.
// Real documents are four levels deep.
constexpr int deepest_nesting = 512;

bool nesting_within_limit(std::string_view text) {
    int depth = 0;
    bool in_string = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (in_string) {
            if (c == '\\') ++i;
            else if (c == '"') in_string = false;
        } else if (c == '"') {
            in_string = true;
        } else if (c == '[' || c == '{') {
            if (++depth > deepest_nesting) return false;
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return true;
}

std::string narrow(const rapidjson::Value& string) { return {string.GetString(), string.GetStringLength()}; }

std::wstring wide(const rapidjson::Value& string) {
    return to_wide(std::string_view(string.GetString(), string.GetStringLength()));
}

// Null, objects and numbers that are no i32 (fractions too) give nothing.
std::optional<setting_value> to_setting_value(const rapidjson::Value& value) {
    if (value.IsBool()) return value.GetBool();
    if (value.IsString()) return narrow(value);
    if (value.IsInt()) return static_cast<int32_t>(value.GetInt());
    if (value.IsArray()) {
        std::vector<std::string> items;
        for (const auto& item : value.GetArray()) {
            if (item.IsString()) items.push_back(narrow(item));
        }
        return items;
    }
    return std::nullopt;
}

// One level of objects is opened into dotted names; a later duplicate replaces the earlier value.
setting_map flatten_settings(const rapidjson::Value& settings) {
    setting_map flat;
    for (const auto& member : settings.GetObject()) {
        const std::string name = narrow(member.name);
        if (member.value.IsObject()) {
            for (const auto& child : member.value.GetObject()) {
                if (auto value = to_setting_value(child.value)) flat[name + "." + narrow(child.name)] = std::move(*value);
            }
        } else if (auto value = to_setting_value(member.value)) {
            flat[name] = std::move(*value);
        }
    }
    return flat;
}

app_record parse_app_record(const rapidjson::Value& element) {
    app_record record;
    if (!element.IsObject()) return record;
    const auto text_member = [&](const char* key) -> const rapidjson::Value* {
        const auto found = element.FindMember(key);
        return found != element.MemberEnd() && found->value.IsString() ? &found->value : nullptr;
    };
    if (const auto* id = text_member("app_id")) record.app_id = narrow(*id);
    if (const auto* name = text_member("name")) record.name = wide(*name);
    if (const auto* version = text_member("version")) record.version = wide(*version);
    if (const auto* status = text_member("status")) record.status = narrow(*status);
    if (const auto settings = element.FindMember("settings");
        settings != element.MemberEnd() && settings->value.IsObject()) {
        record.settings = flatten_settings(settings->value);
    }
    return record;
}

}  // namespace

std::string read_settings_text(const std::filesystem::path& file) {
    std::string bytes;
    {
        std::ifstream in(file, std::ios::binary);
        if (!in) return bytes;
        std::ostringstream all;
        all << in.rdbuf();
        bytes = std::move(all).str();
    }
    // The facet of a decoding wide stream, in its default mode: it neither skips nor expects a
    // byte-order mark, and the text ends where a sequence does not decode, as the stream's would.
    // Decoding the whole buffer at once costs a fraction of going through the stream.
    const std::codecvt_utf8<wchar_t> facet;
    std::mbstate_t state{};
    std::wstring wide(bytes.size(), L'\0');
    const char* from_next = bytes.data();
    wchar_t* to_next = wide.data();
    facet.in(state, bytes.data(), bytes.data() + bytes.size(), from_next, wide.data(), wide.data() + wide.size(), to_next);
    wide.resize(static_cast<size_t>(to_next - wide.data()));
    return to_utf8(wide);
}

std::optional<parsed_document> parse_settings_document(const std::string& utf8) {
    if (!nesting_within_limit(utf8)) return std::nullopt;
    rapidjson::Document document;
    // The text as a terminated string: the parser's sized form would skip a byte-order mark.
    document.Parse(utf8.c_str());
    if (document.HasParseError() || !document.IsObject()) return std::nullopt;

    parsed_document parsed;
    if (const auto version = document.FindMember("version");
        version != document.MemberEnd() && version->value.IsString()) {
        parsed.version = wide(version->value);
    }
    const auto apps = document.FindMember("apps");
    if (apps == document.MemberEnd() || !apps->value.IsArray()) return parsed;

    app_map records;
    for (const auto& element : apps->value.GetArray()) {
        app_record record = parse_app_record(element);
        if (record.app_id.empty()) continue;
        // The first record of an app id counts; emplace leaves an existing one alone.
        const std::string id = record.app_id;
        records.emplace(id, std::move(record));
    }
    parsed.apps = std::move(records);
    return parsed;
}

}  // namespace high_level_settings
