#include "settings/common_settings_file.h"

#include "logging/log.h"

#include <stdexcept>
#include <system_error>

namespace common::setting_utilities {

std::filesystem::path settings_file_system::default_folder(void* module) {
    std::call_once(default_folder_once_, [&] {
        default_folder_ = module_file_name(module).parent_path() / L"Content" / L"Configurations";
    });
    return default_folder_;
}

common_settings_file::common_settings_file(std::wstring app_name_, std::wstring file_stem_,
                                           settings_file_system& file_system_)
    : app_name(std::move(app_name_)), file_stem(std::move(file_stem_)), file_system(file_system_) {
    settings_folder = file_system.local_app_data() / L"Kestrane" / L"Veldrake" / app_name;
    file_name = file_stem + L".json";
    file_path = settings_folder / file_name;
    module_handle = file_system.main_module();
    std::filesystem::create_directories(settings_folder);
}

bool common_settings_file::reload_if_changed(bool force) {
    try {
        if (!force) {
            // Any difference counts, a stamp that moved backwards too.
            const auto stamp = file_system.last_write_time(file_path);
            if (stamp && *stamp == last_write_time) return true;
        }
        if (!std::filesystem::exists(file_path)) copy_default_file();
        const uint64_t stamp = file_system.last_write_time(file_path).value_or(0);
        if (!load()) return false;
        last_write_time = stamp;
        return true;
    } catch (const std::exception& e) {
        // The words say "copy" for every failure here; readers of the log know the line so.
        logging::log(log_severity::critical, "Unable to copy settings file. Details {}", e.what());
        return false;
    } catch (...) {
        return false;
    }
}

void common_settings_file::copy_default_file() {
    const auto source = file_system.default_folder(module_handle) / file_name;
    std::error_code error;
    const bool copied = std::filesystem::copy_file(source, file_path, error);
    if (error) throw std::filesystem::filesystem_error("cannot copy the default settings", source, file_path, error);
    if (!copied) {
        logging::log(log_severity::critical, L"Unable to copy default settings from {} to {}", source.wstring(),
                     file_path.wstring());
        throw std::runtime_error("Unable to copy fallback settings file. See logs for details.");
    }
    logging::log(log_severity::info, L"Copied default settings from {} to {}", source.wstring(), file_path.wstring());
}

}  // namespace common::setting_utilities
