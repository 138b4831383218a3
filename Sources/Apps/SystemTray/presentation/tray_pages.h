#pragma once

#include <string>

// The maker's pages that the menu opens in the browser. The web host is a build setting, so that
// tests can point it at a local server.
namespace tray_pages {

std::wstring feedback_page();
std::wstring support_page();
// `path` (from its slash) on `host`, without the trailing slashes that a host setting may carry.
std::wstring page_on(std::string host, const char* path);

}  // namespace tray_pages
