#pragma once

#include <windows.h>

// GdiplusStartup at the first start(), not before: a tray without a badge or a menu shown never
// needs GDI+. GdiplusShutdown at the end only if it started.
class gdiplus_session {
public:
    gdiplus_session() = default;
    gdiplus_session(const gdiplus_session&) = delete;
    gdiplus_session& operator=(const gdiplus_session&) = delete;
    ~gdiplus_session() { shutdown(); }

    // Starts GDI+ once; after a failure, the next call tries again.
    void start() noexcept;
    void shutdown() noexcept;
    ULONG_PTR token() const noexcept { return token_; }

private:
    ULONG_PTR token_ = 0;
    bool ended_ = false;
};
