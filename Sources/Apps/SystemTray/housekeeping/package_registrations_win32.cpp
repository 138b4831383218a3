#include <windows.h>

#include <shlwapi.h>
#include <tlhelp32.h>

#include "housekeeping/package_registrations.h"
#include "installer_gate_win32.h"
#include "logging/log.h"
#include "platform/appx_api_win32.h"
#include "platform/com_ptr_win32.h"
#include "platform/paths_win32.h"
#include "platform/string_conversion.h"
#include "platform/thread_stack_win32.h"
#include "platform/unique_resource_win32.h"
#include "process/launch_win32.h"
#include "process/process_tools_win32.h"
#include "tray_window_win32.h"

#include <thread>

namespace housekeeping {

namespace {

// The package functions of kernel32, resolved at run time: Wine and older systems may lack them.
template <class F>
F package_function(const char* name) {
    return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

struct package_id_basic {  // PACKAGE_ID
    UINT32 reserved, processor_architecture;
    UINT64 version;
    PWSTR name, publisher, resource_id, publisher_id;
};

// The version in a package full name, or nothing.
std::optional<uint64_t> full_name_version(const wchar_t* full_name) {
    using function = LONG(WINAPI*)(PCWSTR, UINT32, UINT32*, BYTE*);
    static const auto id_from_full_name = package_function<function>("PackageIdFromFullName");
    UINT32 size = 0;
    if (!id_from_full_name || id_from_full_name(full_name, 0, &size, nullptr) != ERROR_INSUFFICIENT_BUFFER) return {};
    std::vector<BYTE> buffer(size);
    if (size < sizeof(package_id_basic) || id_from_full_name(full_name, 0, &size, buffer.data()) != ERROR_SUCCESS) {
        return {};
    }
    return reinterpret_cast<const package_id_basic*>(buffer.data())->version;
}

std::wstring take(LPWSTR text) {
    std::wstring copy = text ? text : L"";
    CoTaskMemFree(text);
    return copy;
}

class platform_port final : public package_port {
public:
    platform_port(std::filesystem::path folder, std::wstring powershell)
        : folder_(std::move(folder)), powershell_(std::move(powershell)) {}

    bool maintenance_running() override { return installer_maintenance_running(); }

    std::optional<std::vector<folder_entry_info>> list_folder(std::wstring& error) override {
        std::error_code opened;
        std::filesystem::directory_iterator it(folder_, opened);
        if (opened) {
            error = to_wide(opened.message());
            return std::nullopt;
        }
        // A failure past the start throws to the pass's caller, which logs it.
        std::vector<folder_entry_info> entries;
        for (; it != std::filesystem::directory_iterator(); ++it) entries.push_back({it->path(), it->is_regular_file()});
        return entries;
    }

    package_identity read_identity(const std::filesystem::path& file) override {
        package_identity id;
        com_ptr<IAppxFactory> factory;
        com_ptr<IStream> stream;
        com_ptr<IAppxPackageReader> reader;
        com_ptr<IAppxManifestReader> manifest;
        com_ptr<IAppxManifestPackageId> package;
        LPWSTR name = nullptr, family = nullptr;
        UINT64 version = 0;
        if (FAILED(CoCreateInstance(appx::CLSID_AppxFactory, nullptr, CLSCTX_INPROC_SERVER, appx::IID_IAppxFactory,
                                    factory.put_void())) ||
            FAILED(SHCreateStreamOnFileEx(file.c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, 0, FALSE, nullptr,
                                          stream.put())) ||
            FAILED(factory->CreatePackageReader(stream.get(), reader.put())) || FAILED(reader->GetManifest(manifest.put())) ||
            FAILED(manifest->GetPackageId(package.put()))) {
            return id;
        }
        const bool read = SUCCEEDED(package->GetName(&name)) && SUCCEEDED(package->GetPackageFamilyName(&family)) &&
                          SUCCEEDED(package->GetVersion(&version));
        id.name = take(name);
        id.family_name = take(family);
        id.version = version;
        id.valid = read;
        return id;
    }

    std::vector<uint64_t> registered_versions(const std::wstring& family_name) override {
        using function = LONG(WINAPI*)(PCWSTR, UINT32*, PWSTR*, UINT32*, WCHAR*);
        static const auto by_family = package_function<function>("GetPackagesByPackageFamily");
        UINT32 count = 0, length = 0;
        if (!by_family || by_family(family_name.c_str(), &count, nullptr, &length, nullptr) != ERROR_INSUFFICIENT_BUFFER ||
            count == 0) {
            return {};
        }
        std::vector<PWSTR> names(count);
        std::vector<WCHAR> buffer(length);
        if (by_family(family_name.c_str(), &count, names.data(), &length, buffer.data()) != ERROR_SUCCESS) return {};
        std::vector<uint64_t> versions;
        for (UINT32 i = 0; i < count; ++i) {
            if (const auto version = full_name_version(names[i])) versions.push_back(*version);
        }
        return versions;
    }

    // The package manager's status query goes through WinRT, which this build does not reach yet:
    // every registered package counts as usable, as one whose status cannot be read does.
    std::wstring status_text(const std::wstring&) override { return L""; }

    bool explorer_holds_other_hook() override {
        const wchar_t* const explorer[] = {L"explorer.exe"};
        for (const uint32_t id : find_processes_by_name(explorer)) {
            for (const std::wstring& module : list_process_modules(id)) {
                if (other_build_hook(module)) return true;
            }
        }
        return false;
    }

    void wait_for_explorer() override {
        const uint64_t until = GetTickCount64() + 30000;
        while (explorer_holds_other_hook() && GetTickCount64() <= until) Sleep(500);
    }

    std::vector<uint32_t> older_surrogates(const std::wstring& family_name, uint64_t version) override {
        using full_name_function = LONG(WINAPI*)(HANDLE, UINT32*, PWSTR);
        using family_function = LONG(WINAPI*)(PCWSTR, UINT32*, PWSTR);
        static const auto full_name_of = package_function<full_name_function>("GetPackageFullName");
        static const auto family_of = package_function<family_function>("PackageFamilyNameFromFullName");
        std::vector<uint32_t> found;
        const wchar_t* const hosts[] = {L"dllhost.exe"};
        for (const uint32_t id : full_name_of && family_of ? find_processes_by_name(hosts) : std::vector<uint32_t>{}) {
            const unique_handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
            wchar_t full_name[128] = {}, family[65] = {};
            UINT32 full_length = 128, family_length = 65;
            if (!process || full_name_of(process.get(), &full_length, full_name) != ERROR_SUCCESS ||
                family_of(full_name, &family_length, family) != ERROR_SUCCESS ||
                CompareStringOrdinal(family, -1, family_name.c_str(), -1, TRUE) != CSTR_EQUAL) {
                continue;
            }
            const auto running = full_name_version(full_name);
            if (running && *running < version) found.push_back(id);
        }
        return found;
    }

    void end_surrogates(const std::vector<uint32_t>& ids) override { end_processes(ids, 100); }
    int32_t run_powershell(const std::wstring& arguments) override { return run_and_wait(powershell_, arguments); }
    void sleep_ms(uint32_t ms) override { Sleep(ms); }
    void log(log_severity level, const std::wstring& line) override { logging::log(level, L"{}", line); }

private:
    std::filesystem::path folder_;
    std::wstring powershell_;
};

void complete_package_registrations_async() noexcept {
    try {
        const com_scope com(COINIT_MULTITHREADED | COINIT_DISABLE_OLE1DDE);
        wchar_t system[MAX_PATH] = {};
        if (GetSystemDirectoryW(system, MAX_PATH) == 0) {
            logging::log(log_severity::warning, "Cannot complete package registrations: no system folder");
            return;
        }
        platform_port port(module_folder(), std::wstring(system) + L"\\WindowsPowerShell\\v1.0\\powershell.exe");
        complete_package_registrations(port, module_folder());
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "complete_package_registrations_async failed: {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "complete_package_registrations_async failed with unknown exception");
    }
}

}  // namespace

}  // namespace housekeeping

void tray_window::start_package_registrations() {
    try {
        std::thread([] {
            housekeeping::complete_package_registrations_async();
            release_unused_stack_pages();
        }).detach();
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "complete_package_registrations_async failed: {}", e.what());
    }
}
