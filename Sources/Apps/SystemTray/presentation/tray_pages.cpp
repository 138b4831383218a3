#include "presentation/tray_pages.h"

#include "platform/string_conversion.h"

namespace tray_pages {

std::wstring page_on(std::string host, const char* path) {
    while (!host.empty() && host.back() == '/') host.pop_back();
    return to_wide(host + path);
}

std::wstring feedback_page() { return page_on(VELDRAKE_WEB_HOST, "/products/veldrake/feedback?ref=client_system_tray"); }

std::wstring support_page() { return page_on(VELDRAKE_WEB_HOST, "/products/veldrake/support"); }

}  // namespace tray_pages
