#include <windows.h>

#include "platform/process_identity.h"

uint32_t current_process_id() noexcept { return GetCurrentProcessId(); }
uint32_t current_thread_id() noexcept { return GetCurrentThreadId(); }
