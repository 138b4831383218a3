#pragma once

#include <utility>

// Runs a callable when the scope ends, unless release() was called first.
template <class F>
class scope_exit {
public:
    explicit scope_exit(F f) noexcept(noexcept(F(std::move(f)))) : f_(std::move(f)) {}
    scope_exit(const scope_exit&) = delete;
    scope_exit& operator=(const scope_exit&) = delete;
    ~scope_exit() {
        if (armed_) f_();
    }
    void release() noexcept { armed_ = false; }

private:
    F f_;
    bool armed_ = true;
};
