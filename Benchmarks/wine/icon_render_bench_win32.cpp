// The cost of one microphone icon render under Wine, against the least that any icon costs: a bare
// 32-pixel bitmap made into an icon. scripts/bench prints the line; nothing asserts a time.
#include <windows.h>

#include <gdiplus.h>

#include "microphone/microphone_icon_win32.h"
#include "platform/gdiplus_session_win32.h"

#include <chrono>
#include <cstdio>

namespace {

template <class Render>
double microseconds_per_render(Render&& render) {
    constexpr int renders = 200;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < renders; ++i) DestroyIcon(render(i));
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count() / renders;
}

}  // namespace

int wmain() {
    gdiplus_session gdiplus;
    gdiplus.start();
    // The first render loads what stays for the process: fonts, GDI+ caches.
    DestroyIcon(microphone::render_microphone_icon(false, false));
    const double render_us =
        microseconds_per_render([](int i) { return microphone::render_microphone_icon(i % 2, i % 3 == 0); });
    const double bare_us = microseconds_per_render([](int) {
        Gdiplus::GpBitmap* bitmap = nullptr;
        HICON icon = nullptr;
        Gdiplus::DllExports::GdipCreateBitmapFromScan0(32, 32, 0, PixelFormat32bppARGB, nullptr, &bitmap);
        Gdiplus::DllExports::GdipCreateHICONFromBitmap(bitmap, &icon);
        Gdiplus::DllExports::GdipDisposeImage(bitmap);
        return icon;
    });
    std::printf("render_microphone_icon: %.1f us, %.1f times a bare icon of %.1f us\n", render_us,
                render_us / bare_us, bare_us);
    return 0;
}
