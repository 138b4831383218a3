#pragma once

#include "toasts/toast_dispatcher.h"

// What the tray's toast dispatcher does on Windows: a COM apartment on its thread, the shell's
// notification (or the tray's own), and the Settings app and the batch helper for clicks.
toast_platform tray_toast_platform();
