#include "settings/high_level_settings.h"

#include "platform/string_conversion.h"

namespace high_level_settings {

settings_file::settings_file() : settings_file(L"Settings", L"High Level Settings") {}

settings_file::settings_file(std::wstring app_name_, std::wstring file_stem_,
                             common::setting_utilities::settings_file_system& file_system_)
    : common_settings_file(std::move(app_name_), std::move(file_stem_), file_system_) {}

bool settings_file::load() {
    try {
        auto parsed = parse_settings_document(read_settings_text(file_path));
        if (!parsed) return true;
        if (parsed->version) version = std::move(*parsed->version);
        if (!parsed->apps) return true;
        {
            std::lock_guard guard(lock);
            apps.swap(*parsed->apps);
        }
        // The old map is freed here, outside the lock.
        return true;
    } catch (...) {
        return false;
    }
}

template <class T>
std::optional<T> settings_file::find(std::string_view app_id, std::string_view key) const {
    std::lock_guard guard(lock);
    const auto app = apps.find(app_id);
    if (app == apps.end()) return std::nullopt;
    const auto setting = app->second.settings.find(key);
    if (setting == app->second.settings.end()) return std::nullopt;
    if (const T* value = std::get_if<T>(&setting->second)) return *value;
    return std::nullopt;
}

bool settings_file::is_app_enabled(std::string_view app_id, bool default_value) const {
    std::lock_guard guard(lock);
    const auto app = apps.find(app_id);
    return app == apps.end() ? default_value : app->second.status != "disabled";
}

bool settings_file::get_bool(std::string_view app_id, std::string_view key) const {
    return find<bool>(app_id, key).value_or(true);
}

std::wstring settings_file::get_string(std::string_view app_id, std::string_view key,
                                       const std::wstring& default_value) const {
    const auto value = find<std::string>(app_id, key);
    return value ? to_wide(*value) : default_value;
}

int32_t settings_file::get_int(std::string_view app_id, std::string_view key, int32_t default_value) const {
    return find<int32_t>(app_id, key).value_or(default_value);
}

std::vector<std::wstring> settings_file::get_string_list(std::string_view app_id, std::string_view key,
                                                         const std::vector<std::wstring>& default_list) const {
    const auto value = find<std::vector<std::string>>(app_id, key);
    if (!value) return default_list;
    std::vector<std::wstring> items;
    items.reserve(value->size());
    for (const auto& item : *value) items.push_back(to_wide(item));
    return items;
}

}  // namespace high_level_settings
