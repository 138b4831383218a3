#include "housekeeping/package_registrations.h"

#include "process/wildcard.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <algorithm>

namespace housekeeping {

namespace {

constexpr uint32_t SETTLE_MS = 2000, SETTLE_AFTER_FAILURE_MS = 30000;

struct package_update {
    std::filesystem::path path;
    std::wstring name, family_name;
    uint64_t installed_version = 0, registered_version = 0;
    std::wstring status_text;
};

bool is_package_file(const folder_entry_info& entry) {
    if (!entry.regular_file) return false;
    std::wstring extension = entry.path.extension().wstring();
    for (wchar_t& c : extension) c = c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c;
    return extension == L".msix";
}

}  // namespace

std::wstring quote_for_powershell(std::wstring_view text) {
    std::wstring quoted = L"'";
    for (const wchar_t c : text) quoted += c == L'\'' ? L"''" : std::wstring(1, c);
    return quoted + L"'";
}

bool other_build_hook(std::wstring_view module_name) {
    return wildcard_match(L"Veldrake.ContextMenuReplacement.Hook*.dll", module_name) &&
           !wildcard_match(L"Veldrake.ContextMenuReplacement.Hook.1.0.10.0.dll", module_name);
}

std::wstring version_text(uint64_t v) {
    return fmt::format(L"{}.{}.{}.{}", v >> 48, (v >> 32) & 0xFFFF, (v >> 16) & 0xFFFF, v & 0xFFFF);
}

void complete_package_registrations(package_port& port, const std::filesystem::path& folder) {
    for (uint32_t attempt = 1; attempt <= PACKAGE_ATTEMPTS; ++attempt) {
        if (port.maintenance_running()) return;
        std::wstring error;
        const auto entries = port.list_folder(error);
        if (!entries) {
            port.log(log_severity::warning, fmt::format(L"Cannot list packages in {}: {}", folder.wstring(), error));
            return;
        }
        std::vector<package_update> updates;
        for (const folder_entry_info& entry : *entries) {
            if (!is_package_file(entry)) continue;
            const package_identity id = port.read_identity(entry.path);
            if (!id.valid) {
                if (attempt == 1) {
                    port.log(log_severity::warning,
                             fmt::format(L"Cannot read the package identity of {}", entry.path.wstring()));
                }
                continue;
            }
            const auto registered = port.registered_versions(id.family_name);
            // This pass updates registrations; it never installs a package the user does not have.
            if (registered.empty()) continue;
            const std::wstring status = port.status_text(id.family_name);
            const uint64_t newest = *std::max_element(registered.begin(), registered.end());
            if (newest > id.version || (newest == id.version && status.empty())) continue;
            updates.push_back({entry.path, id.name, id.family_name, id.version, newest, status});
        }
        if (updates.empty()) {
            if (attempt > 1) port.log(log_severity::info, L"Package registrations match the installed packages");
            return;
        }
        if (port.explorer_holds_other_hook()) {
            port.log(log_severity::info,
                     fmt::format(L"{} package registration(s) need updating, but Explorer still runs another build's "
                                 L"Corvane hook; attempt {} waits for Explorer to restart",
                                 updates.size(), attempt));
            port.wait_for_explorer();
            continue;
        }
        std::vector<uint32_t> surrogates;
        for (const package_update& u : updates) {
            const auto ids = port.older_surrogates(u.family_name, u.installed_version);
            if (ids.empty()) continue;
            port.log(log_severity::info, fmt::format(L"Package {}: ending {} COM surrogate(s) still running an earlier "
                                                     L"version",
                                                     u.name, ids.size()));
            surrogates.insert(surrogates.end(), ids.begin(), ids.end());
        }
        port.end_surrogates(surrogates);
        bool failed = false;
        for (const package_update& u : updates) {
            const int32_t exit_code = port.run_powershell(fmt::format(
                L"-NoProfile -NonInteractive -ExecutionPolicy Bypass -Command \"Add-AppxPackage -Path {} "
                L"-ExternalLocation {} -ForceUpdateFromAnyVersion -ErrorAction Stop\"",
                quote_for_powershell(u.path.wstring()), quote_for_powershell(folder.wstring())));
            failed = failed || exit_code != 0;
            const auto code = static_cast<uint32_t>(exit_code);
            port.log(log_severity::info,
                     u.status_text.empty()
                         ? fmt::format(L"Package {} is registered at {}, behind its installed {}; update attempt {} "
                                       L"exited with code {}",
                                       u.name, version_text(u.registered_version), version_text(u.installed_version),
                                       attempt, code)
                         : fmt::format(L"Package {} is registered at {} but AppX reports it unusable ({}); installed {}; "
                                       L"update attempt {} exited with code {}",
                                       u.name, version_text(u.registered_version), u.status_text,
                                       version_text(u.installed_version), attempt, code));
        }
        // The next scan tells whether it worked: Add-AppxPackage's success is not taken on trust.
        port.sleep_ms(failed ? SETTLE_AFTER_FAILURE_MS : SETTLE_MS);
    }
    port.log(log_severity::warning,
             fmt::format(L"Package registrations are still behind the installed packages after {} attempts; the next "
                         L"tray start tries again",
                         PACKAGE_ATTEMPTS));
}

}  // namespace housekeeping
