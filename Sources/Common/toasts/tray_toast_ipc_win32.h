#pragma once

#include "toasts/tray_toast_ipc.h"

#include <functional>
#include <string>

// The sender's side of toast requests, for any process of the suite.
namespace tray_toast_ipc {

// True only if the tray's window was found, answered within 2 seconds, and took the request.
bool send_toast_request(const toast_request& request);

// Finds the tray's window, or starts the tray from this program's folder and waits 1.5 s for it.
bool ensure_tray_running();

// Asks the tray to show the toast; starts the tray if none runs; shows the toast here when the tray
// cannot be reached, with `fallback_click` as its click.
void send_tray_toast(std::wstring icon_path, std::wstring tooltip, std::wstring title, std::wstring text,
                     toast_click_action click_action, std::wstring click_arg, std::function<void()> fallback_click);

}  // namespace tray_toast_ipc
