#pragma once

#include <windows.h>

#include <string>

namespace updates {

// Downloads the public installer into the user's Downloads folder with a progress dialog; its path,
// or empty on any failure or Cancel. Blocks a worker thread; at most one runs at a time.
std::wstring download_update(HWND window);

// Starts msiexec on the installer and forgets it.
void install_update(const std::wstring& path);

// Thread body of a click on the update toast: download, then install.
void update_worker_install(HWND window);

// Thread body of the menu command: check first; if nothing newer is public, say so.
void update_worker_check_install(HWND window);

}  // namespace updates
