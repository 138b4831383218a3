#pragma once

#include "host/common/temp_folder.h"
#include "settings/high_level_settings.h"

#include <chrono>
#include <string_view>

// A throwaway user and install folder for settings files: LocalAppData and the executable's folder
// lie under one temporary root, and stamp reads go to the platform and are counted.
class settings_sandbox final : public common::setting_utilities::settings_file_system {
public:
    settings_sandbox() { std::filesystem::create_directories(default_file().parent_path()); }

    std::filesystem::path local_app_data() override { return root_ / "LocalAppData"; }
    void* main_module() override { return this; }
    std::filesystem::path module_file_name(void*) override { return root_ / "App" / "Veldrake.SystemTray.exe"; }
    std::optional<uint64_t> last_write_time(const std::filesystem::path& file) override {
        ++stamp_reads;
        return common::setting_utilities::platform_settings_file_system().last_write_time(file);
    }

    std::filesystem::path default_file() const {
        return root_ / "App" / "Content" / "Configurations" / "High Level Settings.json";
    }
    std::filesystem::path user_file() const {
        return root_ / "LocalAppData" / "Kestrane" / "Veldrake" / "Settings" / "High Level Settings.json";
    }
    std::unique_ptr<high_level_settings::settings_file> open() {
        return std::make_unique<high_level_settings::settings_file>(L"Settings", L"High Level Settings", *this);
    }
    // The sandbox's own settings file, opened at the first use.
    high_level_settings::settings_file& file() { return *(file_ ? file_ : file_ = open()); }
    // Writes `text` to the user file under a later stamp than the last load's and reloads file(): whether
    // the reload took.
    bool load(std::string_view text) {
        auto& opened = file();  // opening makes the user's folder
        write(user_file(), text, ++hour_);
        return opened.reload_if_changed(false);
    }

    // Writes `text` with a stamp `hour` hours after a fixed moment, so that two writes never share
    // a stamp by chance.
    static void write(const std::filesystem::path& file, std::string_view text, int hour) {
        static const auto fixed = std::chrono::floor<std::chrono::seconds>(
            std::filesystem::file_time_type::clock::now() - std::chrono::hours(24 * 30));
        std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
        std::filesystem::last_write_time(file, fixed + std::chrono::hours(hour));
    }

    int stamp_reads = 0;  // counted for the benchmarks

private:
    const temp_folder folder_;
    const std::filesystem::path& root_ = folder_.path;
    std::unique_ptr<high_level_settings::settings_file> file_;
    int hour_ = 0;
};

// One app record, "x" unless named, whose settings object is `settings`.
inline std::string document_with_settings(std::string_view settings, std::string_view status = "enabled", std::string_view app = "x") {
    return fmt::format(R"({{"apps":[{{"app_id":"{}","status":"{}","settings":{}}}]}})", app, status, settings);
}
