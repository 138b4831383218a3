#pragma once

#include <memory>
#include <type_traits>
#include <utility>

// A named piece of work that runs on a thread of its own. The name is a string literal: it outlives
// the task and appears in the log when the task fails.
class background_task {
public:
    explicit background_task(const wchar_t* name) noexcept : name_(name) {}
    background_task(const background_task&) = delete;
    background_task& operator=(const background_task&) = delete;
    virtual ~background_task() = default;

    const wchar_t* name() const noexcept { return name_; }
    virtual void run() = 0;

private:
    const wchar_t* name_;
};

// Runs the task; whatever it throws becomes one ERROR line with the task's name, and goes no further.
void run_task_logged(background_task& task) noexcept;

// Starts a detached thread that owns `task`, runs it in a COM apartment of its own and frees it.
// One thread per task: no pool, no queue. Throws std::system_error when no thread can be started.
void start_background_thread(std::unique_ptr<background_task> task);

// The one way to run work off the window thread: `task` is moved onto a new thread and run there.
template <class F>
void run_background_task(const wchar_t* name, F&& task) {
    struct holder final : background_task {
        holder(const wchar_t* name, F&& f) : background_task(name), callable(std::forward<F>(f)) {}
        void run() override { callable(); }
        std::decay_t<F> callable;
    };
    start_background_thread(std::make_unique<holder>(name, std::forward<F>(task)));
}
