#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>

namespace common::setting_utilities {

// What a settings file asks of the platform beyond std::filesystem. The platform's own is one object
// per process; tests put folders of their own behind it and count the stamp reads.
class settings_file_system {
public:
    virtual ~settings_file_system() = default;

    // The user's local application data folder.
    virtual std::filesystem::path local_app_data() = 0;
    // The running executable's module: it locates the default files.
    virtual void* main_module() = 0;
    // The full file name of `module`.
    virtual std::filesystem::path module_file_name(void* module) = 0;
    // The file's last-write time in 100 ns units, or nothing when its attributes cannot be read.
    virtual std::optional<uint64_t> last_write_time(const std::filesystem::path& file) = 0;

    // "Content\Configurations" beside `module`, worked out at the first call and kept, so every
    // settings file of the process shares it.
    std::filesystem::path default_folder(void* module);

private:
    std::once_flag default_folder_once_;
    std::filesystem::path default_folder_;
};

settings_file_system& platform_settings_file_system();

}  // namespace common::setting_utilities
