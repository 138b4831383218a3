#pragma once

#include <windows.h>

#include "explorer/pending_windows.h"
#include "platform/unique_resource_win32.h"

#include <thread>

// The thread that sends new Explorer windows to the suite's start location and sets the navigation
// pane's display in them. It runs from after the tray window's creation until the message loop has
// ended. The pending map belongs to this thread alone: the event callback arrives in its message pump.
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
    void service_pending_windows();
    static void CALLBACK on_explorer_window_event(HWINEVENTHOOK hook, DWORD event, HWND window, LONG object,
                                                 LONG child, DWORD thread, DWORD time) noexcept;

    explorer::pending_explorer_windows pending_explorer_windows;
    unique_handle stop_event_;
    std::thread thread_;
};
