#include "watchdog/ui_watchdog_win32.h"

#include "logging/log.h"
#include "platform/clock_win32.h"
#include "tray_messages.h"
#include "watchdog/hang_dump_writer_win32.h"
#include "watchdog/watchdog_loop.h"

namespace {

class watchdog_platform final : public watchdog::watchdog_port {
public:
    watchdog_platform(HANDLE stop, HWND window, std::atomic<bool>& answered, const std::filesystem::path& folder)
        : stop_(stop), window_(window), answered_(answered), folder_(folder) {}

    bool wait_tick() override { return WaitForSingleObject(stop_, watchdog::TICK_MS) == WAIT_TIMEOUT; }
    uint64_t now() override { return active_time_ms(); }
    bool take_answered() override { return answered_.exchange(false); }
    bool post_ping() override {
        answered_.store(false);
        return PostMessageW(window_, WM_WATCHDOG_PING, 0, 0) != FALSE;
    }
    void log(const watchdog::tick_line& line) override { logging::log(line.level, "{}", line.text); }
    void write_dump() override { write_hang_dump(folder_); }

private:
    HANDLE stop_;
    HWND window_;
    std::atomic<bool>& answered_;
    const std::filesystem::path& folder_;
};

}  // namespace

void ui_watchdog::start_watchdog(HWND target, const std::filesystem::path& folder) {
    if (thread.joinable()) return;
    window = target;
    dump_folder = folder;
    stop_event.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!stop_event) return;
    thread = std::thread([this] { run_watchdog(); });
}

void ui_watchdog::stop_watchdog() noexcept {
    if (stop_event) SetEvent(stop_event.get());
    if (thread.joinable()) thread.join();
    stop_event.reset();
}

void ui_watchdog::run_watchdog() noexcept {
    try {
        watchdog_platform port(stop_event.get(), window, answered, dump_folder);
        watchdog::run_watchdog(port);
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "[watchdog] {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "[watchdog] Unknown exception");
    }
}
