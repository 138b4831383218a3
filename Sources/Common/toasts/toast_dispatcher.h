#pragma once

#include "toasts/tray_toast_ipc.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// One toast waiting to be shown.
struct toast_entry {
    std::wstring icon_path;
    std::wstring tooltip;
    std::wstring title;
    std::wstring text;
    std::function<void()> on_click;  // may be empty
};

// What the dispatcher asks of the platform: the thread's COM scope, the blocking display of one toast,
// and the programs a click starts.
struct toast_platform {
    std::function<void()> thread_begin;
    std::function<void()> thread_end;
    std::function<void(const toast_entry& entry, std::function<bool()> should_continue)> show;
    std::function<void(const std::string& tab)> open_settings_tab;
    std::function<void(const std::vector<std::wstring>& paths, const std::wstring& subject)> add_to_index;
};

// The WM_COPYDATA payload as the window received it.
struct copy_data_view {
    uint64_t id = 0;
    const void* data = nullptr;
    uint32_t bytes = 0;
};

// Shows the suite's toasts one after the other on a thread of its own, so that no sender waits and the
// tray window's thread never blocks. At most three wait; the newest win, and a burst of equal requests
// shows once.
class toast_dispatcher {
public:
    static constexpr size_t MAX_QUEUED = 3;

    explicit toast_dispatcher(toast_platform platform);
    toast_dispatcher(const toast_dispatcher&) = delete;
    toast_dispatcher& operator=(const toast_dispatcher&) = delete;
    ~toast_dispatcher() { stop(); }

    bool running() const noexcept { return thread_.joinable(); }
    // Starts the thread; throws std::system_error when it cannot.
    void start();
    // Drops what waits, ends a showing toast at its next poll, and joins the thread.
    void stop();

    void enqueue(toast_entry entry);
    // True when the request was taken (it may still have been dropped by the queue's rules).
    bool on_copy_data(const copy_data_view* copy_data);
    std::function<void()> make_click_handler(tray_toast_ipc::toast_click_action action, const std::wstring& arg) const;

private:
    void run();

    toast_platform platform_;
    std::thread thread_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<toast_entry> queue_;
    std::atomic<bool> stop_requested_{false};
};
