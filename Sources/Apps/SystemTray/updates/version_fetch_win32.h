#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace updates {

// The public version text from the web host, cleaned; empty on any failure. Blocks: never on the
// window thread.
std::string fetch_public_version();

// The public version against the running one, as an update_status.
uint32_t check_for_update();

// The version check's thread body: posts WM_VERSION_CHECK_RESULT to `window`.
void version_check_worker(HWND window);

}  // namespace updates
