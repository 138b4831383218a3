#include "toasts/toast_utilities_win32.h"

#include "dialogs/theme_helpers_win32.h"
#include "logging/log.h"
#include "platform/com_ptr_win32.h"
#include "toasts/notification_window_win32.h"
#include "toasts/toast_rules.h"

#include <mutex>
#include <new>

namespace toast_utilities {

namespace {

constexpr uint64_t DEADLINE_MS = 20000;
constexpr uint32_t POLL_MS = 500;
constexpr uint32_t ICON_SIZE = 64;
constexpr uint32_t NORMAL_END = 0x800704C7;  // HRESULT_FROM_WIN32(ERROR_CANCELLED): the deadline or a stop

// The shell's object, or the tray's own window where its class is not registered (Wine, trimmed
// systems). Any other failure is the shell's and is reported.
HRESULT create_notification(com_ptr<IUserNotification2>& notification) {
    HRESULT hr = CoCreateInstance(CLSID_UserNotification, nullptr, CLSCTX_INPROC_SERVER, IID_IUserNotification2,
                                  notification.put_void());
    if (hr == REGDB_E_CLASSNOTREG) {
        static std::once_flag told;
        std::call_once(told, [] {
            logging::log(log_severity::info,
                         "show_toast: the shell's notification object is not registered; using the tray's own window");
        });
        notification = create_local_notification(common_dialogs::high_contrast_on());
        hr = S_OK;
    }
    return hr;
}

template <class T>
com_ptr<T> make_object() {
    com_ptr<T> object;
    *object.put() = new (std::nothrow) T;
    return object;
}

}  // namespace

HRESULT query_continue_deadline::QueryContinue() {
    return toast_rules::keep_showing(deadline, GetTickCount64(), should_continue) ? S_OK : S_FALSE;
}

HRESULT notification_callback::OnBalloonUserClick(POINT*) {
    try {
        if (on_click) on_click();
    } catch (...) {
        failure = std::current_exception();
    }
    return S_OK;
}

void show_toast(std::wstring icon_path, std::wstring tooltip, std::wstring title, std::wstring text,
                std::function<void()> on_click, std::function<bool()> should_continue) {
    com_ptr<IUserNotification2> notification;
    if (const HRESULT hr = create_notification(notification); FAILED(hr)) {
        logging::log(log_severity::error, "show_toast: CoCreateInstance(CLSID_UserNotification) failed (hr=0x{:08X})",
                     static_cast<uint32_t>(hr));
        return;
    }

    if (toast_rules::has_icon(icon_path)) {
        // A shared icon belongs to the system: it is never destroyed here.
        const auto icon = static_cast<HICON>(LoadImageW(nullptr, icon_path.c_str(), IMAGE_ICON, ICON_SIZE,
                                                        ICON_SIZE, LR_LOADFROMFILE | LR_DEFAULTSIZE | LR_SHARED));
        if (!icon) {
            logging::log(log_severity::warning, L"show_toast: failed to load icon {} (error {})", icon_path, GetLastError());
        }
        notification->SetIconInfo(icon, tooltip.c_str());
    }
    notification->SetBalloonInfo(title.c_str(), text.c_str(), toast_rules::balloon_flags(icon_path));
    notification->SetBalloonRetry(0, 0, 0);

    com_ptr<IQueryContinue> query;
    if (auto deadline = make_object<query_continue_deadline>()) {
        deadline->deadline = GetTickCount64() + DEADLINE_MS;
        deadline->should_continue = std::move(should_continue);
        *query.put() = deadline.get();
        query->AddRef();
    } else {
        logging::log(log_severity::error, "show_toast: could not create the deadline object; Show may block until dismissed");
    }

    HRESULT shown = S_OK;
    bool done = false;
    if (on_click) {
        if (auto callback = make_object<notification_callback>()) {
            callback->on_click = std::move(on_click);
            shown = notification->Show(query.get(), POLL_MS, callback.get());
            done = true;
            if (callback->failure) std::rethrow_exception(callback->failure);
        } else {
            logging::log(log_severity::error,
                         "show_toast: callback CreateInstance failed (hr=0x{:08X}); showing without click handler",
                         static_cast<uint32_t>(E_OUTOFMEMORY));
        }
    }
    if (!done) shown = notification->Show(query.get(), POLL_MS, nullptr);
    if (FAILED(shown) && static_cast<uint32_t>(shown) != NORMAL_END) {
        logging::log(log_severity::error, "show_toast: Show failed (hr=0x{:08X})", static_cast<uint32_t>(shown));
    }
}

}  // namespace toast_utilities
