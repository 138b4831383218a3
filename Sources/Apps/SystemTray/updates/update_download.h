#pragma once

#include <cstdint>
#include <string>

// The installer's name, address and arguments, and the tray's record of the update roads.
namespace updates {

constexpr uint64_t MIN_INSTALLER_BYTES = 5120000;
constexpr uint16_t PROCESSOR_ARM64 = 12;  // PROCESSOR_ARCHITECTURE_ARM64

// The updates' record in the tray window. download_running is shared with the worker threads and
// lives with the download itself.
struct tray_state {
    bool version_check_in_flight = false;
    uint32_t update_status = 2;  // up_to_date
    bool download_toast_shown = false;
    bool update_notice_pending = false;
};

// TIMER_VERSION_CHECK: whether to start a check now; one at a time, until its result comes.
bool begin_version_check(tray_state& s);

// WM_VERSION_CHECK_RESULT: stores the status and lets the update toast go out once more.
void on_version_check_result(tray_state& s, uint32_t status);

// Whether the update toast is due now; when true, it counts as shown until the next check result.
bool take_download_toast(tray_state& s);

bool update_available(uint32_t status);

// "x64", or "ARM64" for the native processor architecture 12.
std::wstring platform_text(uint16_t native_architecture);

// "Veldrake <version> <platform>.msi" with the server's version text as it came, "v" and all.
std::wstring installer_file_name(const std::wstring& version, const std::wstring& platform);

// The base, the file name with blanks as %20, and the download's reference as the query.
std::wstring installer_url(const std::wstring& base, const std::wstring& file_name);

// Where the download goes until it has proved big enough: beside the installer, named by `ticks`.
std::wstring temporary_installer_path(const std::wstring& installer_path, uint64_t ticks);

bool installer_size_acceptable(uint64_t bytes);

// msiexec's arguments: install `path` with a progress bar only, and never restart by itself.
std::wstring installer_arguments(const std::wstring& path);

// The menu's answer when no update is public.
std::wstring up_to_date_text(const std::wstring& version);

// The update-complete notice: due when a version was recorded before and it is not `current`.
bool installed_version_changed(const std::wstring& recorded, const std::wstring& current);
std::wstring update_installed_text(const std::wstring& version);

}  // namespace updates
