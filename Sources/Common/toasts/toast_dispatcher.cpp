#include "toasts/toast_dispatcher.h"

#include "logging/log.h"
#include "platform/string_conversion.h"

#include <algorithm>

using tray_toast_ipc::toast_click_action;

toast_dispatcher::toast_dispatcher(toast_platform platform) : platform_(std::move(platform)) {}

void toast_dispatcher::start() {
    if (thread_.joinable()) return;
    stop_requested_ = false;
    thread_ = std::thread([this] { run(); });
}

void toast_dispatcher::stop() {
    if (!thread_.joinable()) return;
    {
        std::lock_guard lock(mutex_);
        stop_requested_ = true;
        queue_.clear();
    }
    wake_.notify_all();
    thread_.join();
}

void toast_dispatcher::enqueue(toast_entry entry) {
    if (entry.text.empty()) return;
    {
        std::lock_guard lock(mutex_);
        if (stop_requested_) return;
        const bool duplicate = std::any_of(queue_.begin(), queue_.end(), [&](const toast_entry& queued) {
            return queued.title == entry.title && queued.text == entry.text;
        });
        if (duplicate) return;
        while (queue_.size() >= MAX_QUEUED) queue_.pop_front();
        queue_.push_back(std::move(entry));
    }
    wake_.notify_one();
}

bool toast_dispatcher::on_copy_data(const copy_data_view* copy_data) {
    if (!copy_data || copy_data->id != tray_toast_ipc::TOAST_COPYDATA_ID || !copy_data->data || copy_data->bytes < 2) {
        return false;
    }
    tray_toast_ipc::toast_request request;
    if (!tray_toast_ipc::decode_toast_request(static_cast<const wchar_t*>(copy_data->data),
                                              copy_data->bytes / sizeof(wchar_t), request)) {
        logging::log(log_severity::warning, "toast_dispatcher: ignoring a malformed toast request");
        return false;
    }
    enqueue({std::move(request.icon_path), std::move(request.tooltip), std::move(request.title),
             std::move(request.text), make_click_handler(request.click_action, request.click_arg)});
    return true;
}

std::function<void()> toast_dispatcher::make_click_handler(toast_click_action action, const std::wstring& arg) const {
    switch (action) {
        case toast_click_action::open_settings_tab: {
            std::string tab = to_utf8(arg);
            if (tab.empty() || !platform_.open_settings_tab) return {};
            return [launch = platform_.open_settings_tab, tab = std::move(tab)] { launch(tab); };
        }
        case toast_click_action::add_to_index: {
            auto arguments = tray_toast_ipc::parse_add_to_index_arg(arg);
            if (!arguments || !platform_.add_to_index) return {};
            return [launch = platform_.add_to_index, arguments = std::move(*arguments)] {
                try {
                    launch(arguments.paths, arguments.subject);
                } catch (const std::exception& e) {
                    logging::log(log_severity::error, "toast_dispatcher: failed to launch the add-to-index helper: {}",
                                 e.what());
                }
            };
        }
        case toast_click_action::none:
        default:
            return {};
    }
}

void toast_dispatcher::run() {
    if (platform_.thread_begin) platform_.thread_begin();
    for (;;) {
        toast_entry entry;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return stop_requested_ || !queue_.empty(); });
            if (stop_requested_) break;
            entry = std::move(queue_.front());
            queue_.pop_front();
        }
        try {
            platform_.show(entry, [this] { return !stop_requested_; });
        } catch (const std::exception& e) {
            logging::log(log_severity::error, "toast_dispatcher: exception while showing a toast: {}", e.what());
        } catch (...) {
            logging::log(log_severity::error, "toast_dispatcher: unknown exception while showing a toast");
        }
    }
    if (platform_.thread_end) platform_.thread_end();
}
