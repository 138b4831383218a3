#include <windows.h>

#include <shlobj.h>

#include "process/settings_app_win32.h"

#include "dialogs/message_dialog_win32.h"
#include "logging/log.h"
#include "platform/paths_win32.h"
#include "platform/sdk_gaps_win32.h"
#include "process/launch_win32.h"
#include "process/settings_app.h"

namespace settings_app {

namespace {

std::wstring error_text(uint32_t error) {
    wchar_t* buffer = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
        LANG_USER_DEFAULT, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    if (length == 0 || !buffer) return L"unable to get message from FormatMessage";
    std::wstring text(buffer, length);
    LocalFree(buffer);
    text.erase(text.find_last_not_of(L" \t\r\n") + 1);
    return text;
}

// A packaged or elevated tray leaves the start to the shell, so the app runs with the user's own
// identity and rights rather than inheriting ours.
bool start_through_shell() { return !sdk::has_no_package() || IsUserAnAdmin(); }

void start(const std::wstring& path, const std::wstring& arguments) {
    if (start_through_shell()) {
        if (launch_via_shell(path, arguments, SW_SHOWNORMAL, false)) return;
        const DWORD error = GetLastError();
        logging::log(log_severity::error, L"Failed to launch the Settings app {} {}: error {}", path, arguments, error);
        throw launch_error(fmt::format("Unable to launch {}", to_utf8(path)), error, launch_failure_text(path, error));
    }

    std::wstring command_line = L"\"" + path + L"\" " + arguments;
    const std::wstring folder = std::filesystem::path(path).parent_path().wstring();
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION info{};
    if (CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &startup, &info)) {
        CloseHandle(info.hThread);
        CloseHandle(info.hProcess);
        return;
    }
    const DWORD error = GetLastError();
    if (error == 0) return;
    logging::log(log_severity::error, L"Failed to launch the Settings app {} {}: error {} ({}){}", path, arguments, error,
                 error_text(error), to_wide(application_control_suffix(error)));
    throw launch_error(fmt::format("Unable to launch {}: error {}", to_utf8(path), error), error,
                       launch_failure_text(path, error));
}

}  // namespace

std::wstring launch_failure_text(const std::wstring& path, uint32_t error) {
    return format_launch_failure_text(path, error, error_text(error));
}

void open_settings_tab_direct(const std::string& tab) noexcept {
    std::wstring message;
    try {
        const std::wstring path = (module_folder() / L"Veldrake.exe").wstring();
        start(path, open_tab_arguments(tab));
        return;
    } catch (const launch_error& e) {
        message = e.user_message;
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "Failed to launch the Settings app: {}", e.what());
        message = L"The Veldrake Settings app could not be started.\n\n" + to_wide(e.what());
    }
    try {
        common_dialogs::message_dialog dialog(message, false);
        dialog.title = L"Veldrake";
        dialog.bring_to_front = true;
        dialog.show(nullptr);
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "Failed to show the Settings app failure: {}", e.what());
    }
}

}  // namespace settings_app
