#include "platform/sdk_gaps_win32.h"

namespace sdk {

LONG get_current_package_full_name(UINT32* length, PWSTR name) noexcept {
    using function = LONG(WINAPI*)(UINT32*, PWSTR);
    static const auto resolved = reinterpret_cast<function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetCurrentPackageFullName")));
    return resolved ? resolved(length, name) : ERROR_CALL_NOT_IMPLEMENTED;
}

bool has_no_package() noexcept {
    UINT32 length = 0;
    return get_current_package_full_name(&length, nullptr) == APPMODEL_ERROR_NO_PACKAGE;
}

}  // namespace sdk
