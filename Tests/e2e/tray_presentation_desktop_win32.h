#pragma once

#include <windows.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

// Drives the Wine desktop from the Linux side, as a person would: clicks with xdotool and screenshots
// with ImageMagick. Wine starts Linux programs but gives no handle to wait on, so each command runs
// under /bin/sh, which leaves its exit code in a file that we poll.
namespace desktop {

// The Linux path of a Windows path.
std::string unix_path(const std::filesystem::path& windows_path);

// Runs `command` (no double quotes in it) under /bin/sh; its exit code, or nothing after `timeout`.
std::optional<int> run_unix(const std::string& command, std::chrono::milliseconds timeout = std::chrono::seconds(20));

// Moves the pointer to `at` and clicks `button` (1 left, 3 right, 0 none) `count` times.
bool click(POINT at, int button, int count = 1);
// Moves the pointer away, to a quiet spot of the desktop, and clicks there.
bool click_empty_desktop();

// The bounding box of the pixels on screen within `tolerance` of `rgb` (0x00RRGGBB) in `area`, or nothing.
std::optional<RECT> find_colour(const RECT& area, uint32_t rgb, int tolerance);

// The tray's icon: where the logo's teal tile shows in the notification area, the bottom strip of the
// desktop's right half.
std::optional<RECT> find_tray_icon();
POINT centre(const RECT& r);

// The `n`-th item of the tray's menu on screen (6 is Exit, below the separator). Menus of another
// process cannot be read, but their measure can: six items of one height and the separator's 9 pixels
// at 96 dpi.
RECT menu_item(HWND menu, int n);

}  // namespace desktop
