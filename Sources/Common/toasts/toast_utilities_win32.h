#pragma once

#include <windows.h>

#include <shobjidl.h>

#include "platform/com_object_win32.h"

#include <exception>
#include <functional>
#include <string>

namespace toast_utilities {

// Shows one notification and returns when it is gone: clicked, ended by `should_continue`, or after
// 20 seconds. Blocks its thread, which must have initialised COM and must not be the tray window's.
// Failures of the platform are logged; what `on_click` throws reaches the caller once the
// notification is gone.
void show_toast(std::wstring icon_path, std::wstring tooltip, std::wstring title, std::wstring text,
                std::function<void()> on_click, std::function<bool()> should_continue);

// Asked at every poll of the notification: S_OK keeps it, S_FALSE ends it.
class query_continue_deadline : public com_object<IQueryContinue> {
public:
    uint64_t deadline = 0;  // GetTickCount64 milliseconds; 0: none
    std::function<bool()> should_continue;

    HRESULT STDMETHODCALLTYPE QueryContinue() override;
};

// Runs the click action when the user clicks the notification. What the action throws is kept for
// show_toast's caller rather than unwound through the shell.
class notification_callback : public com_object<IUserNotificationCallback> {
public:
    std::function<void()> on_click;
    std::exception_ptr failure;

    HRESULT STDMETHODCALLTYPE OnBalloonUserClick(POINT*) override;
    HRESULT STDMETHODCALLTYPE OnLeftClick(POINT*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnContextMenu(POINT*) override { return S_OK; }
};

}  // namespace toast_utilities
