#include "process/background_task.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

// Signals when the callable that owns it is destroyed, that is when its record is freed.
struct freed_signal {
    explicit freed_signal(std::promise<void>& p) : promise(&p) {}
    ~freed_signal() { promise->set_value(); }
    std::promise<void>* promise;
};

}  // namespace

TEST(background_task, threads_run_each_task_once_off_the_caller_and_free_it_afterwards) {
    std::promise<std::thread::id> ran_on;
    std::promise<void> freed;
    auto owned = std::make_unique<freed_signal>(freed);  // move-only, as a task's payload often is
    run_background_task(L"record", [&ran_on, owned = std::move(owned)] { ran_on.set_value(std::this_thread::get_id()); });
    auto ran = ran_on.get_future();
    ASSERT_EQ(ran.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_NE(ran.get(), std::this_thread::get_id());
    EXPECT_EQ(freed.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
}

TEST(background_task, threads_that_throw_end_alone_and_free_their_task) {
    std::promise<void> freed_after_error, freed_after_unknown;
    auto first = std::make_unique<freed_signal>(freed_after_error);
    auto second = std::make_unique<freed_signal>(freed_after_unknown);
    run_background_task(L"throws_standard", [owned = std::move(first)] { throw std::runtime_error("boom"); });
    run_background_task(L"throws_other", [owned = std::move(second)] { throw 42; });
    EXPECT_EQ(freed_after_error.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_EQ(freed_after_unknown.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);

    std::promise<void> later;
    run_background_task(L"after", [&later] { later.set_value(); });
    EXPECT_EQ(later.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
}
