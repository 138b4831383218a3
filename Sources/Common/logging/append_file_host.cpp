#include "logging/append_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>

// O_APPEND makes each write land at the end of the file, atomically.

namespace {
int descriptor(void* handle) { return static_cast<int>(reinterpret_cast<intptr_t>(handle)) - 1; }
}  // namespace

append_file::~append_file() {
    if (handle_) close(descriptor(handle_));
}

bool append_file::open(const std::filesystem::path& path) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) return false;
    handle_ = reinterpret_cast<void*>(static_cast<intptr_t>(fd) + 1);
    return true;
}

bool append_file::is_open() const noexcept { return handle_ != nullptr; }

void append_file::append(std::string_view bytes) noexcept {
    if (handle_) [[maybe_unused]] auto ignored = write(descriptor(handle_), bytes.data(), bytes.size());
}
