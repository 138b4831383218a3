#pragma once

#include <windows.h>

#include <gdiplus.h>

#include "common/wine_process_win32.h"
#include "platform/unique_resource_win32.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

// What the code under test drew, read back pixel by pixel.
namespace test_pixels {

// 0xAARRGGBB pixels of a bitmap, top-down.
struct argb_pixels {
    int width = 0, height = 0;
    std::vector<uint32_t> argb;
    uint32_t at(int x, int y) const { return argb[static_cast<size_t>(y) * width + x]; }
};

inline argb_pixels read_bitmap(HBITMAP bitmap) {
    BITMAP info{};
    GetObjectW(bitmap, sizeof(info), &info);
    argb_pixels p{info.bmWidth, std::abs(info.bmHeight), {}};
    p.argb.resize(static_cast<size_t>(p.width) * p.height);
    BITMAPINFO request{{sizeof(BITMAPINFOHEADER), p.width, -p.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
    const HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, static_cast<UINT>(p.height), p.argb.data(), &request, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    return p;
}

// The colour bitmap of an icon; nothing for no icon.
inline argb_pixels read_icon(const unique_hicon& icon) {
    ICONINFO info{};
    if (!icon || !GetIconInfo(icon.get(), &info)) return {};
    const unique_hgdiobj colour(info.hbmColor), mask(info.hbmMask);
    return read_bitmap(info.hbmColor);
}

// A memory DC that windows paint into, read as COLORREFs.
struct canvas {
    canvas(int width, int height) : dc(CreateCompatibleDC(nullptr)) {
        const HDC screen = GetDC(nullptr);
        bitmap.reset(CreateCompatibleBitmap(screen, width, height));
        ReleaseDC(nullptr, screen);
        old = SelectObject(dc, bitmap.get());
    }
    ~canvas() {
        SelectObject(dc, old);
        DeleteDC(dc);
    }
    // Asks `window` to paint its client area here.
    void print(HWND window) const { SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT); }
    COLORREF at(int x, int y) const { return GetPixel(dc, x, y); }
    // Whether any pixel of `r` is exactly `colour`.
    bool shows(const RECT& r, COLORREF colour) const {
        for (int y = r.top; y < r.bottom; ++y)
            for (int x = r.left; x < r.right; ++x)
                if (GetPixel(dc, x, y) == colour) return true;
        return false;
    }
    // Kept as a PNG beside the end-to-end tier's pictures.
    void keep(const std::wstring& name) {
        namespace gp = Gdiplus::DllExports;
        const auto folder = test_support::this_program().parent_path().parent_path() / L"artifacts\\tray_presentation";
        std::filesystem::create_directories(folder);
        // GDI+ reads a bitmap that no DC holds.
        SelectObject(dc, old);
        const CLSID png{0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
        Gdiplus::GpBitmap* image = nullptr;
        gp::GdipCreateBitmapFromHBITMAP(static_cast<HBITMAP>(bitmap.get()), nullptr, &image);
        gp::GdipSaveImageToFile(image, (folder / (name + L".png")).c_str(), &png, nullptr);
        gp::GdipDisposeImage(image);
        SelectObject(dc, bitmap.get());
    }

    HDC dc;
    unique_hgdiobj bitmap;
    HGDIOBJ old = nullptr;
};

}  // namespace test_pixels
