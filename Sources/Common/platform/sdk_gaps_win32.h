#pragma once

// Declarations that mingw-w64 v10 lacks, taken from the public SDK definitions. Package functions
// are resolved at run time: older systems and Wine may not export them.
#include <windows.h>

#ifndef APPMODEL_ERROR_NO_PACKAGE
#define APPMODEL_ERROR_NO_PACKAGE 15700L
#endif

namespace sdk {

constexpr DWORD DWMWA_USE_IMMERSIVE_DARK_MODE = 20;
constexpr DWORD DWMWA_WINDOW_CORNER_PREFERENCE = 33;
constexpr DWORD DWMWCP_ROUND = 2;

// GetCurrentPackageFullName from kernel32; ERROR_CALL_NOT_IMPLEMENTED when it is not exported.
LONG get_current_package_full_name(UINT32* length, PWSTR name) noexcept;

// True when the process runs without package identity.
bool has_no_package() noexcept;

}  // namespace sdk
