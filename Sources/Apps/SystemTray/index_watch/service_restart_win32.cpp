#include <windows.h>

#include <shellapi.h>

#include "index_watch/service_restart_win32.h"

#include "dialogs/message_dialog_win32.h"
#include "index_watch/index_sampler_win32.h"
#include "index_watch/service_restart.h"
#include "logging/log.h"
#include "platform/com_ptr_win32.h"

#include <exception>
#include <memory>

namespace index_watch {

namespace {

// The service manager, ShellExecuteExW and the dialog. Whatever the road left open closes with it.
class service_manager_port final : public search_service_port {
public:
    explicit service_manager_port(HWND window) noexcept : window_(window) {}
    ~service_manager_port() override {
        close_service();
        close_process();
        close_manager();
    }

    bool open_service() override {
        manager_ = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
        if (!manager_) return false;
        service_ = OpenServiceW(manager_, L"WSearch", SERVICE_QUERY_STATUS | SERVICE_START | SERVICE_STOP);
        return service_ != nullptr;
    }
    uint32_t stop_service(uint32_t& state) override {
        SERVICE_STATUS status{};
        const uint32_t error = ControlService(service_, SERVICE_CONTROL_STOP, &status) ? 0 : GetLastError();
        state = status.dwCurrentState;
        return error;
    }
    std::optional<uint32_t> query_state() override {
        SERVICE_STATUS status{};
        if (!QueryServiceStatus(service_, &status)) return std::nullopt;
        return status.dwCurrentState;
    }
    uint32_t start_service() override { return StartServiceW(service_, 0, nullptr) ? 0 : GetLastError(); }
    void close_service() override {
        if (service_) CloseServiceHandle(std::exchange(service_, nullptr));
    }
    void sleep_ms(uint32_t ms) override { Sleep(ms); }

    elevated_start start_elevated() override {
        SHELLEXECUTEINFOW info{};
        info.cbSize = sizeof(info);
        info.fMask = SEE_MASK_NOCLOSEPROCESS;
        info.lpVerb = L"runas";
        info.lpFile = L"powershell.exe";
        info.lpParameters = ELEVATED_RESTART_PARAMETERS;
        info.nShow = SW_HIDE;
        // A refused consent prompt comes back as a failure too.
        if (!ShellExecuteExW(&info)) return {.error = GetLastError()};
        process_ = info.hProcess;
        return {.launched = true, .has_process = process_ != nullptr};
    }
    elevated_end wait_elevated(uint32_t ms) override {
        elevated_end end;
        if (WaitForSingleObject(process_, ms) == WAIT_OBJECT_0) {
            end.ended = true;
            DWORD code = 0;
            end.read_failed = !GetExitCodeProcess(process_, &code);
            end.exit_code = code;
        }
        close_process();
        return end;
    }
    void close_manager() override {
        if (manager_) CloseServiceHandle(std::exchange(manager_, nullptr));
    }
    void show_failure(const std::wstring& text) override { common_dialogs::show_info_message(text, window_); }

private:
    void close_process() noexcept {
        if (process_) CloseHandle(std::exchange(process_, nullptr));
    }

    HWND window_;
    SC_HANDLE manager_ = nullptr, service_ = nullptr;
    HANDLE process_ = nullptr;
};

// The thread's entry: the window's handle comes in a heap cell, which it frees.
unsigned __stdcall restart_search_service(void* window_cell) {
    const std::unique_ptr<HWND> window(static_cast<HWND*>(window_cell));
    try {
        // The shell's elevation road and the dialog want an apartment.
        const com_scope com;
        service_manager_port port(*window);
        restart_search_service(port);
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "restart_search_service: Exception: {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "restart_search_service: Unknown exception");
    }
    return 0;
}

}  // namespace

void start_search_service_restart(HWND window) {
    auto cell = std::make_unique<HWND>(window);
    start_detached_thread(restart_search_service, cell.get());
    cell.release();  // the thread owns it now
}

}  // namespace index_watch
