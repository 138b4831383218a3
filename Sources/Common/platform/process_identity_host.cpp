#include "platform/process_identity.h"

#include <sys/syscall.h>
#include <unistd.h>

uint32_t current_process_id() noexcept { return static_cast<uint32_t>(getpid()); }
uint32_t current_thread_id() noexcept { return static_cast<uint32_t>(syscall(SYS_gettid)); }
