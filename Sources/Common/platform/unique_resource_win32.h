#pragma once

#include <windows.h>

#include <utility>

// One owner type for every handle kind. Each kind is a traits struct with its invalid value and its
// close call; the aliases below are all the project uses.
template <class Traits>
class unique_resource {
public:
    using pointer = typename Traits::pointer;

    unique_resource() noexcept = default;
    explicit unique_resource(pointer value) noexcept : value_(value) {}
    unique_resource(unique_resource&& other) noexcept : value_(other.release()) {}
    unique_resource& operator=(unique_resource&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    unique_resource(const unique_resource&) = delete;
    unique_resource& operator=(const unique_resource&) = delete;
    ~unique_resource() { reset(); }

    pointer get() const noexcept { return value_; }
    explicit operator bool() const noexcept { return value_ != Traits::invalid(); }

    // Keeps GetLastError as it was, so a failed call can be reported after its handle is dropped.
    void reset(pointer value = Traits::invalid()) noexcept {
        if (value_ != Traits::invalid()) {
            const DWORD saved = GetLastError();
            Traits::close(value_);
            SetLastError(saved);
        }
        value_ = value;
    }

    pointer release() noexcept { return std::exchange(value_, Traits::invalid()); }

    // Releases what is held before handing out the address for an out-parameter.
    pointer* put() noexcept {
        reset();
        return &value_;
    }

private:
    pointer value_ = Traits::invalid();
};

namespace resource_traits {

struct handle {
    using pointer = HANDLE;
    static pointer invalid() noexcept { return nullptr; }
    static void close(pointer h) noexcept { CloseHandle(h); }
};

struct file_handle {
    using pointer = HANDLE;
    static pointer invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(pointer h) noexcept { CloseHandle(h); }
};

struct hkey {
    using pointer = HKEY;
    static pointer invalid() noexcept { return nullptr; }
    static void close(pointer h) noexcept { RegCloseKey(h); }
};

struct hicon {
    using pointer = HICON;
    static pointer invalid() noexcept { return nullptr; }
    static void close(pointer h) noexcept { DestroyIcon(h); }
};

struct hmenu {
    using pointer = HMENU;
    static pointer invalid() noexcept { return nullptr; }
    static void close(pointer h) noexcept { DestroyMenu(h); }
};

struct hgdiobj {
    using pointer = HGDIOBJ;
    static pointer invalid() noexcept { return nullptr; }
    static void close(pointer h) noexcept { DeleteObject(h); }
};

struct hmodule {
    using pointer = HMODULE;
    static pointer invalid() noexcept { return nullptr; }
    static void close(pointer h) noexcept { FreeLibrary(h); }
};

// A mutex created with initial ownership is released before its handle is closed.
struct owned_mutex {
    using pointer = HANDLE;
    static pointer invalid() noexcept { return nullptr; }
    static void close(pointer h) noexcept {
        ReleaseMutex(h);
        CloseHandle(h);
    }
};

}  // namespace resource_traits

using unique_handle = unique_resource<resource_traits::handle>;
using unique_file = unique_resource<resource_traits::file_handle>;
using unique_hkey = unique_resource<resource_traits::hkey>;
using unique_hicon = unique_resource<resource_traits::hicon>;
using unique_hmenu = unique_resource<resource_traits::hmenu>;
using unique_hgdiobj = unique_resource<resource_traits::hgdiobj>;
using unique_hmodule = unique_resource<resource_traits::hmodule>;
using unique_owned_mutex = unique_resource<resource_traits::owned_mutex>;
