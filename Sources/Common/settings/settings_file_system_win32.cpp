#include <windows.h>

#include "platform/paths_win32.h"
#include "settings/settings_file_system.h"

namespace common::setting_utilities {
namespace {

class windows_file_system final : public settings_file_system {
public:
    std::filesystem::path local_app_data() override { return local_app_data_folder(); }

    void* main_module() override { return GetModuleHandleW(nullptr); }

    std::filesystem::path module_file_name(void* module) override {
        return ::module_file_name(static_cast<HMODULE>(module));
    }

    std::optional<uint64_t> last_write_time(const std::filesystem::path& file) override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data)) return std::nullopt;
        return (static_cast<uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) | data.ftLastWriteTime.dwLowDateTime;
    }
};

}  // namespace

settings_file_system& platform_settings_file_system() {
    static windows_file_system instance;
    return instance;
}

}  // namespace common::setting_utilities
