#include <windows.h>

#include "logging/append_file.h"

#include <climits>

// Without FILE_WRITE_DATA every write goes to the end of the file; a CRT stream in "a" mode seeks and
// then writes, and lines of two processes can mix. Windows makes such appends atomic, but Wine does
// not, so writers also take a byte-range lock far past any data: it serialises the writers of every
// process for two more calls per line, and the log is written rarely.

namespace {
constexpr DWORD lock_offset_low = 0xFFFFFFFE;
constexpr DWORD lock_offset_high = 0x7FFFFFFF;
}  // namespace

append_file::~append_file() {
    if (handle_) CloseHandle(handle_);
}

bool append_file::open(const std::filesystem::path& path) {
    const HANDLE h = CreateFileW(path.c_str(), FILE_APPEND_DATA | SYNCHRONIZE,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                                 FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    handle_ = h;
    return true;
}

bool append_file::is_open() const noexcept { return handle_ != nullptr; }

void append_file::append(std::string_view bytes) noexcept {
    if (!handle_ || bytes.size() > UINT_MAX) return;
    OVERLAPPED range{};
    range.Offset = lock_offset_low;
    range.OffsetHigh = lock_offset_high;
    const bool locked = LockFileEx(handle_, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &range) != FALSE;
    DWORD written = 0;
    WriteFile(handle_, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    if (locked) UnlockFileEx(handle_, 0, 1, 0, &range);
}
