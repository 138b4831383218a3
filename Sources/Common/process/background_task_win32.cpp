#include <windows.h>

#include <objbase.h>
#include <process.h>

#include "platform/thread_stack_win32.h"
#include "process/background_task.h"

#include <cerrno>
#include <system_error>

namespace {

unsigned __stdcall background_thread(void* parameter) {
    std::unique_ptr<background_task> task(static_cast<background_task*>(parameter));
    // Wine keeps the stack of the last thread to end until another ends, so even a short task's counts.
    release_unused_stack_pages();
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    run_task_logged(*task);
    // Deliberately unconditional: a fresh thread's initialisation does not fail.
    CoUninitialize();
    release_unused_stack_pages();
    return 0;
}

}  // namespace

void start_background_thread(std::unique_ptr<background_task> task) {
    const uintptr_t thread = _beginthreadex(nullptr, 0, background_thread, task.get(), 0, nullptr);
    if (thread == 0) throw std::system_error(errno, std::generic_category(), "_beginthreadex");
    // The thread owns the task now, and may already have freed it.
    task.release();
    CloseHandle(reinterpret_cast<HANDLE>(thread));
}
