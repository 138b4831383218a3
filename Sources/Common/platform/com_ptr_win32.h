#pragma once

#include <objbase.h>
#include <windows.h>

#include <utility>

// Owns one reference to a COM interface.
template <class I>
class com_ptr {
public:
    com_ptr() noexcept = default;
    com_ptr(const com_ptr& other) noexcept : p_(other.p_) {
        if (p_) p_->AddRef();
    }
    com_ptr(com_ptr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    com_ptr& operator=(com_ptr other) noexcept {
        std::swap(p_, other.p_);
        return *this;
    }
    ~com_ptr() { reset(); }

    I* get() const noexcept { return p_; }
    I* operator->() const noexcept { return p_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }

    void reset() noexcept {
        if (I* old = std::exchange(p_, nullptr)) old->Release();
    }

    // Releases what is held before handing out the address for an out-parameter.
    I** put() noexcept {
        reset();
        return &p_;
    }
    void** put_void() noexcept { return reinterpret_cast<void**>(put()); }

    template <class U>
    com_ptr<U> try_query() const noexcept {
        com_ptr<U> result;
        if (p_) p_->QueryInterface(__uuidof(U), result.put_void());
        return result;
    }

private:
    I* p_ = nullptr;
};

// CoInitializeEx for one scope; CoUninitialize only when the initialisation succeeded.
class com_scope {
public:
    explicit com_scope(DWORD model = COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE) noexcept
        : result_(CoInitializeEx(nullptr, model)) {}
    com_scope(const com_scope&) = delete;
    com_scope& operator=(const com_scope&) = delete;
    ~com_scope() {
        if (SUCCEEDED(result_)) CoUninitialize();
    }
    HRESULT result() const noexcept { return result_; }

private:
    HRESULT result_;
};
