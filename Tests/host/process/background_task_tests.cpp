#include "process/background_task.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

// Signals when the task that owns it is freed.
struct freed_signal {
    std::promise<void> freed;
    ~freed_signal() { freed.set_value(); }
};

}  // namespace

// Each task runs once off the caller's thread and is freed afterwards, whether it returns or throws.
TEST(background_task, threads_run_each_task_off_the_caller_and_free_it_even_when_it_throws) {
    std::promise<std::thread::id> ran_on;
    auto returns = std::make_unique<freed_signal>(), throws = std::make_unique<freed_signal>(),
         throws_other = std::make_unique<freed_signal>();
    std::future<void> freed[] = {returns->freed.get_future(), throws->freed.get_future(),
                                 throws_other->freed.get_future()};
    run_background_task(L"returns",
                        [&ran_on, owned = std::move(returns)] { ran_on.set_value(std::this_thread::get_id()); });
    run_background_task(L"throws", [owned = std::move(throws)] { throw std::runtime_error("boom"); });
    run_background_task(L"throws_other", [owned = std::move(throws_other)] { throw 42; });
    auto ran = ran_on.get_future();
    ASSERT_EQ(ran.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_NE(ran.get(), std::this_thread::get_id());
    for (auto& f : freed) EXPECT_EQ(f.wait_for(std::chrono::seconds(20)), std::future_status::ready);
}
