#pragma once

// How the suite's processes find and name the tray.
constexpr wchar_t TRAY_WINDOW_CLASS[] = L"VeldrakeSystemTrayWnd";
constexpr wchar_t TRAY_WINDOW_TITLE[] = L"VeldrakeSystemTray";
constexpr wchar_t TRAY_EXECUTABLE[] = L"Veldrake.SystemTray.exe";
constexpr wchar_t TRAY_SINGLE_INSTANCE_MUTEX[] = L"Local\\Veldrake_SystemTray_SingleInstance";
constexpr wchar_t APP_USER_MODEL_ID[] = L"Kestrane.Veldrake";
constexpr wchar_t LOG_SUBJECT[] = L"System Tray";
