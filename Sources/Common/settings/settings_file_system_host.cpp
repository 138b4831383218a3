#include "settings/settings_file_system.h"

#include <chrono>
#include <cstdlib>
#include <system_error>

namespace common::setting_utilities {
namespace {

// The host has no LocalAppData: the XDG data folder stands in for it.
class host_file_system final : public settings_file_system {
public:
    std::filesystem::path local_app_data() override {
        if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data) return data;
        if (const char* home = std::getenv("HOME"); home && *home) return std::filesystem::path(home) / ".local" / "share";
        return std::filesystem::temp_directory_path();
    }

    void* main_module() override { return nullptr; }

    std::filesystem::path module_file_name(void*) override { return std::filesystem::read_symlink("/proc/self/exe"); }

    std::optional<uint64_t> last_write_time(const std::filesystem::path& file) override {
        std::error_code error;
        const auto stamp = std::filesystem::last_write_time(file, error);
        if (error) return std::nullopt;
        // In the platform's 100 ns steps, the way the stamps compare on Windows.
        using ticks = std::chrono::duration<int64_t, std::ratio<1, 10000000>>;
        return static_cast<uint64_t>(std::chrono::duration_cast<ticks>(stamp.time_since_epoch()).count());
    }
};

}  // namespace

settings_file_system& platform_settings_file_system() {
    static host_file_system instance;
    return instance;
}

}  // namespace common::setting_utilities
