#include <windows.h>

#include <knownfolders.h>
#include <shlobj.h>

#include "settings/settings_file_system.h"

#include <string>
#include <system_error>

namespace common::setting_utilities {
namespace {

class windows_file_system final : public settings_file_system {
public:
    std::filesystem::path local_app_data() override {
        PWSTR folder = nullptr;
        const HRESULT hr = SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, &folder);
        if (FAILED(hr)) {
            CoTaskMemFree(folder);
            throw std::filesystem::filesystem_error("LocalAppData is not available",
                                                    std::error_code(hr, std::system_category()));
        }
        std::filesystem::path result(folder);
        CoTaskMemFree(folder);
        return result;
    }

    void* main_module() override { return GetModuleHandleW(nullptr); }

    std::filesystem::path module_file_name(void* module) override {
        const auto handle = static_cast<HMODULE>(module);
        std::wstring buffer(MAX_PATH, L'\0');
        DWORD length = GetModuleFileNameW(handle, buffer.data(), static_cast<DWORD>(buffer.size()));
        if (length == buffer.size() && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
            buffer.assign(65535, L'\0');
            length = GetModuleFileNameW(handle, buffer.data(), static_cast<DWORD>(buffer.size()));
        }
        buffer.resize(length);
        return buffer;
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
