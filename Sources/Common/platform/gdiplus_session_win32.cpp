#include "platform/gdiplus_session_win32.h"

#include <gdiplus.h>

void gdiplus_session::start() noexcept {
    if (token_ || ended_) return;
    Gdiplus::GdiplusStartupInput input;  // version 1, no debug callback
    if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok) token_ = 0;
}

void gdiplus_session::shutdown() noexcept {
    if (token_) Gdiplus::GdiplusShutdown(token_);
    token_ = 0;
    ended_ = true;
}
