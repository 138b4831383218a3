#pragma once

#include <windows.h>

#include <shobjidl.h>

#include "platform/com_ptr_win32.h"

// The tray's own notification, for systems where the shell's user-notification object is not
// registered. It offers the same operations, so a toast follows one road whatever shows it: a themed
// window at the bottom right of the work area with icon, title and text, that asks the continue-query
// at each poll and reports a click.
namespace toast_utilities {

constexpr wchar_t NOTIFICATION_WINDOW_CLASS[] = L"VeldrakeNotificationWnd";

// `contrast`: whether a contrast theme is on; the window then draws in the user's system colours.
com_ptr<IUserNotification2> create_local_notification(bool contrast);

}  // namespace toast_utilities
