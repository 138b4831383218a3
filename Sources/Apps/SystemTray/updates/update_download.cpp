#include "updates/update_download.h"

#include "updates/version_check.h"

#include <utility>

namespace updates {

namespace {

void replace_all(std::wstring& text, const std::wstring& from, const std::wstring& to) {
    for (size_t at = text.find(from); at != std::wstring::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

bool begin_version_check(tray_state& s) { return !std::exchange(s.version_check_in_flight, true); }

void on_version_check_result(tray_state& s, uint32_t status) {
    s.version_check_in_flight = false;
    s.update_status = status;
    s.download_toast_shown = false;
}

bool take_download_toast(tray_state& s) {
    if (s.download_toast_shown || !update_available(s.update_status)) return false;
    s.download_toast_shown = true;
    return true;
}

bool update_available(uint32_t status) { return (status & UPDATE_AVAILABLE_MASK) != 0; }

std::wstring platform_text(uint16_t native_architecture) {
    return native_architecture == PROCESSOR_ARM64 ? L"ARM64" : L"x64";
}

std::wstring installer_file_name(const std::wstring& version, const std::wstring& platform) {
    std::wstring name = L"Veldrake <version> <platform>.msi";
    replace_all(name, L"<version>", version);
    replace_all(name, L"<platform>", platform);
    return name;
}

std::wstring installer_url(const std::wstring& base, const std::wstring& file_name) {
    std::wstring url = base;
    if (url.empty() || url.back() != L'/') url += L'/';
    std::wstring escaped = file_name;
    replace_all(escaped, L" ", L"%20");
    url += escaped;
    url += url.find(L'?') == std::wstring::npos ? L'?' : L'&';
    return url + L"ref=client_download_update";
}

std::wstring temporary_installer_path(const std::wstring& installer_path, uint64_t ticks) {
    return installer_path + L"." + std::to_wstring(ticks) + L".tmp";
}

bool installer_size_acceptable(uint64_t bytes) { return bytes >= MIN_INSTALLER_BYTES; }

std::wstring installer_arguments(const std::wstring& path) {
    return L"/i \"" + path + L"\" /passive REBOOT=ReallySuppress";
}

std::wstring up_to_date_text(const std::wstring& version) {
    return L"Your Veldrake is already up to date with " + version + L". Happy veldrake!";
}

bool installed_version_changed(const std::wstring& recorded, const std::wstring& current) {
    return !recorded.empty() && recorded != current;
}

std::wstring update_installed_text(const std::wstring& version) {
    return L"Update to " + version +
           L" installed. Restart Windows when convenient to finish cleaning up the previous version. Click to see "
           L"what's new.";
}

}  // namespace updates
