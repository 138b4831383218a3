#include "toasts/tray_toast_ipc.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

// Any bytes a sibling process may send: decoding must not crash, and what decodes must survive
// being encoded and decoded again unchanged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<wchar_t> chars(size / sizeof(wchar_t));
    if (!chars.empty()) std::memcpy(chars.data(), data, chars.size() * sizeof(wchar_t));
    tray_toast_ipc::toast_request request;
    if (!tray_toast_ipc::decode_toast_request(chars.data(), chars.size(), request)) return 0;

    const std::wstring again = tray_toast_ipc::encode_toast_request(request);
    tray_toast_ipc::toast_request decoded;
    if (!tray_toast_ipc::decode_toast_request(again.c_str(), again.size(), decoded) || !(decoded == request)) std::abort();
    return 0;
}
