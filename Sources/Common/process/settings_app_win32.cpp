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

}  // namespace

void start_settings_app(const std::wstring& path, const std::wstring& arguments, bool elevated) {
    if (start_through_shell(!sdk::has_no_package(), elevated)) {
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

std::wstring launch_failure_text(const std::wstring& path, uint32_t error) {
    return format_launch_failure_text(path, error, error_text(error));
}

std::wstring start_failure_text(std::exception_ptr failure) {
    std::string what;
    try {
        std::rethrow_exception(failure);
    } catch (const launch_error& e) {
        return e.user_message;
    } catch (const std::exception& e) {
        what = e.what();
    } catch (const process_launch::com_failure& e) {
        what = fmt::format("out of memory for the shell's arguments (hr=0x{:08X})", static_cast<uint32_t>(e.result));
    } catch (...) {
        what = "unknown failure";
    }
    logging::log(log_severity::error, "Failed to launch the Settings app: {}", what);
    return L"The Veldrake Settings app could not be started.\n\n" + to_wide(what);
}

void open_settings_tab_direct(const std::string& tab) {
    std::wstring message;
    try {
        const std::wstring path = (module_folder() / L"Veldrake.exe").wstring();
        start_settings_app(path, open_tab_arguments(tab), IsUserAnAdmin() != FALSE);
        return;
    } catch (...) {
        message = start_failure_text(std::current_exception());
    }
    try {
        common_dialogs::message_dialog dialog(message, false);
        dialog.title = L"Veldrake";
        dialog.bring_to_front = true;
        dialog.show(nullptr);
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "Failed to show the Settings app failure: {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "Failed to show the Settings app failure");
    }
}

}  // namespace settings_app
