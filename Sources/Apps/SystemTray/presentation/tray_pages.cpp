#include "presentation/tray_pages.h"

#include "platform/string_conversion.h"

namespace tray_pages {

namespace {

std::wstring on_web_host(const char* path) {
    std::string host = VELDRAKE_WEB_HOST;
    while (!host.empty() && host.back() == '/') host.pop_back();
    return to_wide(host + path);
}

}  // namespace

std::wstring feedback_page() { return on_web_host("/products/veldrake/feedback?ref=client_system_tray"); }

std::wstring support_page() { return on_web_host("/products/veldrake/support"); }

}  // namespace tray_pages
