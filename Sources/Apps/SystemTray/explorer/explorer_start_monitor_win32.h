#pragma once

#include <windows.h>

#include "platform/unique_resource_win32.h"

#include <thread>

// The thread that sends new Explorer windows to the suite's start location. It runs from after the
// tray window's creation until the message loop has ended.
class explorer_start_monitor {
public:
    explorer_start_monitor() = default;
    explorer_start_monitor(const explorer_start_monitor&) = delete;
    explorer_start_monitor& operator=(const explorer_start_monitor&) = delete;
    ~explorer_start_monitor() { stop(); }

    // Without a stop event the thread is not started and the tray goes on without the feature.
    void start();
    void stop() noexcept;

private:
    void run() noexcept;

    unique_handle stop_event_;
    std::thread thread_;
};
