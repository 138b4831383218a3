#include "watchdog/ui_watchdog_win32.h"

#include "logging/log.h"
#include "platform/clock_win32.h"
#include "platform/thread_stack_win32.h"
#include "tray_messages.h"
#include "tray_timings.h"
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
    if (thread) return;
    window = target;
    dump_folder = folder;
    stop_event.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!stop_event) return;
    thread.reset(CreateThread(nullptr, 0, thread_entry, this, 0, nullptr));
    if (!thread) logging::log(log_severity::error, "[watchdog] Could not start its thread (error {})", GetLastError());
}

void ui_watchdog::stop_watchdog() noexcept {
    if (stop_event) SetEvent(stop_event.get());
    // The thread's own handle, not a library join: the wait ends as soon as the thread does, and a
    // thread held up in its exit (writing a dump of a hung process, say) never keeps the tray from ending.
    if (thread && WaitForSingleObject(thread.get(), STOP_WAIT_MS) != WAIT_OBJECT_0) {
        logging::log(log_severity::warning, "[watchdog] Its thread did not end within {} ms; the tray ends without it",
                     STOP_WAIT_MS);
        // The straggler keeps a signalled event to wake on.
        (void)stop_event.release();
    }
    thread.reset();
    stop_event.reset();
}

DWORD WINAPI ui_watchdog::thread_entry(void* self) noexcept {
    static_cast<ui_watchdog*>(self)->run_watchdog();
    return 0;
}

void ui_watchdog::run_watchdog() noexcept {
    try {
        watchdog_platform port(stop_event.get(), window, answered, dump_folder);
        release_unused_stack_pages();
        watchdog::run_watchdog(port, TRAY_TIMINGS.hang_threshold_ms);
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "[watchdog] {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "[watchdog] Unknown exception");
    }
}
