#pragma once

#include "platform/suite_identity.h"

#include <cstdint>

// The tray window's private messages, timers, notification icons and menu commands, in one place.
// Numbers are written out: other processes and tests rely on them.

constexpr uint32_t WM_TRAY_NOTIFY = 0x0400 + 1;           // WM_USER + 1: callback of both icons
constexpr uint32_t WM_MIC_ENDPOINT_CHANGED = 0x0400 + 2;  // from the microphone monitor
constexpr uint32_t WM_START_DOWNLOAD = 0x8000 + 1;        // WM_APP + 1: the update toast was clicked
constexpr uint32_t WM_INDEX_COUNTS = 0x8002;              // wParam items to index, lParam total items
constexpr uint32_t WM_VERSION_CHECK_RESULT = 0x8003;      // wParam the new update_status
constexpr uint32_t WM_WATCHDOG_PING = 0x8004;
constexpr uint32_t WM_SHUTDOWN_DONE = 0x8005;
constexpr uint32_t WM_MIC_STATE = 0x8006;  // wParam microphone_state_flags, lParam mic_generation
constexpr uint32_t WM_NAMESPACE_ICON_RETRY = 0x8007;

constexpr uint32_t TIMER_INDEX_POLL = 1025;
constexpr uint32_t TIMER_VERSION_CHECK = 1026;
constexpr uint32_t TIMER_UPDATE_NOTICE = 1027;
constexpr uint32_t TIMER_SETTINGS_POLL = 1028;
constexpr uint32_t TIMER_SINGLE_CLICK = 1029;
constexpr uint32_t TIMER_RECONCILE_DELAY = 1030;

constexpr uint32_t TRAY_ICON_MAIN = 1001;
constexpr uint32_t TRAY_ICON_MICROPHONE = 1002;

constexpr uint32_t ID_TRAY_SETTINGS = 2001;
constexpr uint32_t ID_TRAY_INDEXING_STATUS = 2002;
constexpr uint32_t ID_TRAY_EXIT = 2003;
constexpr uint32_t ID_TRAY_UPDATE = 2004;
constexpr uint32_t ID_TRAY_FEEDBACK = 2005;
constexpr uint32_t ID_TRAY_SUPPORT = 2006;
