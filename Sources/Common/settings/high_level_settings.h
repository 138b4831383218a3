#pragma once

#include "settings/common_settings_file.h"
#include "settings/settings_document.h"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace high_level_settings {

// "High Level Settings.json": every component's status and options, as the Settings app writes them.
// Readers call reload_if_changed(false) first, then the getters; a value of the wrong type reads as
// absent, and no getter reports an error.
class settings_file : public common::setting_utilities::common_settings_file {
public:
    settings_file();
    settings_file(std::wstring app_name, std::wstring file_stem,
                  common::setting_utilities::settings_file_system& file_system =
                      common::setting_utilities::platform_settings_file_system());

    // A document that cannot be read or parsed keeps the content in memory and still counts as
    // loaded, so that the same bad file is not parsed again until it changes.
    bool load() override;

    // The default when the app is absent; otherwise whether its status is not exactly "disabled".
    bool is_app_enabled(std::string_view app_id, bool default_value) const;
    // Every boolean setting of the tray defaults to true.
    bool get_bool(std::string_view app_id, std::string_view key) const;
    std::wstring get_string(std::string_view app_id, std::string_view key, const std::wstring& default_value) const;
    int32_t get_int(std::string_view app_id, std::string_view key, int32_t default_value) const;
    std::vector<std::wstring> get_string_list(std::string_view app_id, std::string_view key,
                                              const std::vector<std::wstring>& default_list) const;

private:
    // The value under the lock, or nothing when the app or key is absent or of another type.
    template <class T>
    std::optional<T> find(std::string_view app_id, std::string_view key) const;

    std::wstring version;  // kept, read by nobody
    app_map apps;
    mutable std::mutex lock;  // guards apps against the swap in load()
};

}  // namespace high_level_settings
