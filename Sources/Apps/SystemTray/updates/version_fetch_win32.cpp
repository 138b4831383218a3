#include "updates/version_fetch_win32.h"

#include <wininet.h>

#include "logging/log.h"
#include "platform/string_conversion.h"
#include "platform/unique_resource_win32.h"
#include "tray_messages.h"
#include "updates/version_check.h"

namespace updates {

namespace {

struct internet_traits {
    using pointer = HINTERNET;
    static pointer invalid() noexcept { return nullptr; }
    static void close(pointer h) noexcept { InternetCloseHandle(h); }
};
using unique_hinternet = unique_resource<internet_traits>;

constexpr DWORD STATUS_AS_NUMBER = HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER;  // 0x20000013
constexpr DWORD READ_CHUNK = 1024;

}  // namespace

std::string fetch_public_version() {
    const unique_hinternet session(
        InternetOpenW(L"Veldrake Windows Client", INTERNET_OPEN_TYPE_DIRECT, nullptr, nullptr, 0));
    if (!session) return {};
    const std::wstring url = version_text_url();
    const unique_hinternet request(
        InternetOpenUrlW(session.get(), url.c_str(), nullptr, 0, INTERNET_FLAG_RELOAD, 0));
    if (!request) return {};

    DWORD status = 0, size = sizeof(status);
    if (!HttpQueryInfoW(request.get(), STATUS_AS_NUMBER, &status, &size, nullptr) || status != 200) {
        logging::log(log_severity::warning, "Public version check: unexpected HTTP status {}, ignoring the response",
                     status);
        return {};
    }
    std::string body;
    char chunk[READ_CHUNK];
    DWORD read = 0;
    // A failed read keeps what came before it.
    while (InternetReadFile(request.get(), chunk, READ_CHUNK, &read) && read > 0) body.append(chunk, read);
    return clean_version_body(std::move(body));
}

uint32_t check_for_update() {
    const std::string published = fetch_public_version();
    const std::wstring running = current_version_string();
    if (published.empty() || running.empty()) return up_to_date;
    return compare_versions(published, to_utf8(running));
}

void version_check_worker(HWND window) {
    const uint32_t status = check_for_update();
    PostMessageW(window, WM_VERSION_CHECK_RESULT, status, 0);
}

}  // namespace updates
