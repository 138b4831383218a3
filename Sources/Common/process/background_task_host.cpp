#include "process/background_task.h"

#include <thread>

// The host has no COM: the thread only runs the task.
void start_background_thread(std::unique_ptr<background_task> task) {
    std::thread([owned = std::move(task)] { run_task_logged(*owned); }).detach();
}
