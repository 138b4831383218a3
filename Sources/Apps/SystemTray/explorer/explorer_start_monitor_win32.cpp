#include "explorer/explorer_start_monitor_win32.h"

void explorer_start_monitor::start() {
    if (thread_.joinable()) return;
    stop_event_.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!stop_event_) return;
    thread_ = std::thread([this] { run(); });
}

void explorer_start_monitor::stop() noexcept {
    if (stop_event_) SetEvent(stop_event_.get());
    if (thread_.joinable()) thread_.join();
    stop_event_.reset();
}

void explorer_start_monitor::run() noexcept {
    // New windows are not followed yet: the thread only waits to be stopped.
    WaitForSingleObject(stop_event_.get(), INFINITE);
}
