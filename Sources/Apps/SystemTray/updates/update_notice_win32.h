#pragma once

#include <windows.h>

namespace updates {

// Records the running version under HKCU and says whether it differs from the one recorded at the
// last start, which makes the "Update installed" toast due.
bool note_installed_version();

}  // namespace updates
