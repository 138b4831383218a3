#pragma once

#include <windows.h>

// GdiplusStartup for the life of the owner; GdiplusShutdown only if it started.
class gdiplus_session {
public:
    gdiplus_session() noexcept;
    gdiplus_session(const gdiplus_session&) = delete;
    gdiplus_session& operator=(const gdiplus_session&) = delete;
    ~gdiplus_session() { shutdown(); }

    void shutdown() noexcept;
    ULONG_PTR token() const noexcept { return token_; }

private:
    ULONG_PTR token_ = 0;
};
