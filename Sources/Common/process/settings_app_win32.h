#pragma once

#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string>

// Starting the suite's Settings app, Veldrake.exe beside the tray, on a tab.
namespace settings_app {

class launch_error : public std::runtime_error {
public:
    launch_error(const std::string& what, uint32_t error_code, std::wstring user_message)
        : std::runtime_error(what), error_code(error_code), user_message(std::move(user_message)) {}

    uint32_t error_code;
    std::wstring user_message;
};

// The dialog's text for a failed start: the path, the system's text for the code, the code.
std::wstring launch_failure_text(const std::wstring& path, uint32_t error);

// Starts `path` with `arguments` through the shell or, for an unpackaged tray that is not `elevated`,
// directly in the program's folder. Throws launch_error, logged already, when the start fails.
void start_settings_app(const std::wstring& path, const std::wstring& arguments, bool elevated);

// The dialog's text for whatever `failure` was; logs the failures that start_settings_app did not.
std::wstring start_failure_text(std::exception_ptr failure);

// Starts the Settings app on `tab` ("settings", "what-new", "context-menu-replacement"). A failure
// is logged and shown in a dialog, which this call waits for: never call it on the window thread.
// Nothing leaves it.
void open_settings_tab_direct(const std::string& tab);

}  // namespace settings_app
