#pragma once

#include "logging/log_format.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// Brings the user's registrations of the suite's .msix packages level with the files beside the tray,
// once per start, in at most ten attempts. The platform sits behind a port; the pass is its decisions.
namespace housekeeping {

struct package_identity {
    std::wstring name, family_name;
    uint64_t version = 0;  // four 16-bit fields, major in the top ones
    bool valid = false;
};

struct folder_entry_info {
    std::filesystem::path path;
    bool regular_file = false;
};

class package_port {
public:
    virtual ~package_port() = default;
    virtual bool maintenance_running() = 0;
    // The folder's entries; nothing when it cannot be listed, with the system's message in `error`.
    virtual std::optional<std::vector<folder_entry_info>> list_folder(std::wstring& error) = 0;
    virtual package_identity read_identity(const std::filesystem::path& file) = 0;
    virtual std::vector<uint64_t> registered_versions(const std::wstring& family_name) = 0;
    virtual std::wstring status_text(const std::wstring& family_name) = 0;
    virtual bool explorer_holds_other_hook() = 0;
    // Polls until Explorer lets go of another build's hook, or 30 s have passed.
    virtual void wait_for_explorer() = 0;
    virtual std::vector<uint32_t> older_surrogates(const std::wstring& family_name, uint64_t version) = 0;
    virtual void end_surrogates(const std::vector<uint32_t>& process_ids) = 0;
    // Runs PowerShell with these arguments and gives its exit code, -1 when it could not run.
    virtual int32_t run_powershell(const std::wstring& arguments) = 0;
    virtual void sleep_ms(uint32_t ms) = 0;
    virtual void log(log_severity level, const std::wstring& line) = 0;
};

constexpr uint32_t PACKAGE_ATTEMPTS = 10;

// The whole pass over the package folder `folder`.
void complete_package_registrations(package_port& port, const std::filesystem::path& folder);

// A PowerShell single-quoted string: each ' doubled, and one before and one behind.
std::wstring quote_for_powershell(std::wstring_view text);

// Whether a module that Explorer holds is the Corvane hook of another build than this one.
bool other_build_hook(std::wstring_view module_name);

// "1.2.3.4" from a packed version.
std::wstring version_text(uint64_t version);

}  // namespace housekeeping
