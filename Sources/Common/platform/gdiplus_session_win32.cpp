#include "platform/gdiplus_session_win32.h"

#include <gdiplus.h>

gdiplus_session::gdiplus_session() noexcept {
    Gdiplus::GdiplusStartupInput input;  // version 1, no debug callback
    if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok) token_ = 0;
}

void gdiplus_session::shutdown() noexcept {
    if (token_) Gdiplus::GdiplusShutdown(token_);
    token_ = 0;
}
