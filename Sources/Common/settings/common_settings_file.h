#pragma once

#include "settings/settings_file_system.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace common::setting_utilities {

// One JSON settings file of the suite under LocalAppData\Kestrane\Veldrake\<app_name>, read only.
// The file is put in place from its default on first use and read again only when its time stamp
// moves, so that polling it costs one attribute read.
class common_settings_file {
public:
    // Creates the settings folder if it is missing (its error leaves the constructor); reads nothing.
    common_settings_file(std::wstring app_name, std::wstring file_stem,
                         settings_file_system& file_system = platform_settings_file_system());
    common_settings_file(const common_settings_file&) = delete;
    common_settings_file& operator=(const common_settings_file&) = delete;

    // True when the content in memory may be used. Never throws.
    virtual bool reload_if_changed(bool force);
    // Reads the file into memory. False makes the next reload_if_changed try again.
    virtual bool load() = 0;

    virtual ~common_settings_file() = default;

    const std::filesystem::path& path() const noexcept { return file_path; }

protected:
    std::wstring app_name;
    std::wstring file_stem;
    std::filesystem::path file_path;
    std::filesystem::path file_name;
    std::filesystem::path settings_folder;
    void* module_handle = nullptr;
    uint64_t last_write_time = 0;  // of the last successful load
    settings_file_system& file_system;

private:
    void copy_default_file();
};

}  // namespace common::setting_utilities
