#include "housekeeping/dialog_hook.h"

#include "settings/high_level_settings.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <algorithm>

namespace housekeeping {

namespace {

constexpr const char* APP_ID = "context-menu-replacement";

bool same_text(std::wstring_view a, std::wstring_view b) noexcept {
    const auto fold = [](wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c; };
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [&](wchar_t x, wchar_t y) {
               return fold(x) == fold(y);
           });
}

bool listed(const std::vector<std::wstring>& names, std::wstring_view name) {
    return std::any_of(names.begin(), names.end(), [&](const std::wstring& n) { return same_text(n, name); });
}

}  // namespace

bool read_dialog_settings(const high_level_settings::settings_file& settings, dialog_settings& out) {
    if (!settings.is_app_enabled(APP_ID, false)) return false;
    // Browsers, game launchers and anti-cheat services: out of the hook's way unless the user says.
    static const std::vector<std::wstring> default_exclusions = {
        L"chrome.exe",       L"msedge.exe",         L"firefox.exe",     L"brave.exe",
        L"opera.exe",        L"vivaldi.exe",        L"steam.exe",       L"steamwebhelper.exe",
        L"epicgameslauncher.exe", L"battle.net.exe", L"eadesktop.exe",  L"riotclientservices.exe",
        L"easyanticheat.exe", L"beservice.exe"};
    out.mode = settings.get_string(APP_ID, "dialogs.mode", L"all-except");
    out.allowed = settings.get_string_list(APP_ID, "dialogs.allowedProcessNames", {L"notepad.exe"});
    out.excluded = settings.get_string_list(APP_ID, "dialogs.excludedProcessNames", default_exclusions);
    return true;
}

bool dialog_selected(const dialog_settings& settings, std::wstring_view image_name) {
    if (image_name.empty() || image_name == L"explorer.exe" || same_text(settings.mode, L"off")) return false;
    if (same_text(settings.mode, L"allowlist")) return listed(settings.allowed, image_name);
    return !listed(settings.excluded, image_name);
}

bool is_crash_exit(uint32_t exit_code) noexcept {
    constexpr uint32_t STATUS_CONTROL_C_EXIT = 0xC000013A, STATUS_BREAKPOINT = 0x80000003;
    if (exit_code == STATUS_CONTROL_C_EXIT) return false;
    return (exit_code & 0xC0000000) == 0xC0000000 || exit_code == STATUS_BREAKPOINT;
}

std::wstring crash_record(const local_time& t, uint32_t exit_code) {
    return fmt::format(L"{:04}-{:02}-{:02} {:02}:{:02}:{:02} exit 0x{:08X}", t.year, t.month, t.day, t.hour, t.minute,
                       t.second, exit_code);
}

std::wstring inject_dialog_arguments(uintptr_t window) { return fmt::format(L"inject-dialog 0x{:X}", window); }

}  // namespace housekeeping

namespace housekeeping {

std::wstring crash_toast_title(std::wstring_view process_name) {
    return L"Corvane turned off for " + std::wstring(process_name);
}

std::wstring crash_toast_text(std::wstring_view process_name) {
    return std::wstring(process_name) +
           L" closed unexpectedly while Corvane was active in it, so Open and Save dialogs there show the Windows menu "
           L"from now on. Click to turn it back on in Settings.";
}

}  // namespace housekeeping
