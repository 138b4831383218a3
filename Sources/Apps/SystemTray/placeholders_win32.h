#pragma once

// Subsystems that are not built yet. Each keeps the name and shape that the tray window calls, and
// does nothing, until its own module replaces it here. Keeping them in one place shows what is left.
#include <windows.h>

#include <atomic>
#include <filesystem>
#include <string>
