#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Restarts the search service after the user asked for it: first through the service manager, which
// needs rights that most users lack, then through an elevated PowerShell command. The user hears of
// it only when both roads fail. Runs on a thread of its own: it blocks for up to a minute and a half.
namespace index_watch {

constexpr wchar_t ELEVATED_RESTART_PARAMETERS[] =
    L"-NoProfile -WindowStyle Hidden -Command \"Restart-Service -Name WSearch -Force\"";

// The platform calls of the restart. The port owns its handles; the road says when to close them.
struct search_service_port {
    virtual ~search_service_port() = default;

    // Direct road. open_service(): the manager and the service; false when either cannot be opened.
    virtual bool open_service() = 0;
    // 0 or the error; `state` gets dwCurrentState of the status that the call filled (zeroed before).
    virtual uint32_t stop_service(uint32_t& state) = 0;
    virtual std::optional<uint32_t> query_state() = 0;  // dwCurrentState, nothing when the query fails
    virtual uint32_t start_service() = 0;              // 0 or the error
    virtual void close_service() = 0;                  // the service handle
    virtual void sleep_ms(uint32_t ms) = 0;

    // Elevated road: ShellExecuteExW of powershell with "runas".
    struct elevated_start {
        bool launched = false;
        uint32_t error = 0;  // GetLastError when not launched
        bool has_process = false;
    };
    virtual elevated_start start_elevated() = 0;
    // Waits up to `ms` for the elevated process and closes its handle. ended: it ended in time;
    // read_failed: its exit code could not be read.
    struct elevated_end {
        bool ended = false;
        bool read_failed = false;
        uint32_t exit_code = 0;
    };
    virtual elevated_end wait_elevated(uint32_t ms) = 0;
    virtual void close_manager() = 0;  // if there is one
    virtual void show_failure(const std::wstring& text) = 0;
};

// Returns whether the restart counts as a success; the samples that follow show the real outcome.
bool restart_search_service(search_service_port& port);

}  // namespace index_watch
