#include <windows.h>

#include "platform/thread_stack_win32.h"

#include <cstdint>

namespace {

// What stays resident below the caller: room for the calls that the thread makes every time it wakes.
constexpr uintptr_t KEPT_BELOW_FRAME_BYTES = 64 * 1024;

}  // namespace

void release_unused_stack_pages() noexcept {
    const auto* tib = reinterpret_cast<const NT_TIB*>(NtCurrentTeb());
    const auto lowest = reinterpret_cast<uintptr_t>(tib->StackLimit);
    const auto frame = reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
    if (frame - lowest <= KEPT_BELOW_FRAME_BYTES) return;
    SYSTEM_INFO system{};
    GetSystemInfo(&system);
    const uintptr_t end = (frame - KEPT_BELOW_FRAME_BYTES) & ~(uintptr_t{system.dwPageSize} - 1);
    if (end <= lowest) return;
    // MEM_RESET keeps the pages committed and only drops their contents; it fails harmlessly on a range
    // that is not wholly committed, and then nothing changes.
    VirtualAlloc(reinterpret_cast<void*>(lowest), end - lowest, MEM_RESET, PAGE_READWRITE);
}
