#include "microphone/microphone_icon_win32.h"
#include "platform/gdiplus_session_win32.h"

#include <gdiplus.h>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <iostream>

namespace {

// What an icon shows: its side, the box of its solid pixels, how many there are and how many of them
// are not `colour`.
struct solid_pixels {
    LONG size = 0;
    int count = 0, other_colour = 0;
    RECT box{1000, 1000, -1, -1};
};

solid_pixels read_icon(HICON handle, uint32_t colour) {
    const unique_hicon icon(handle);
    ICONINFO info{};
    if (!icon || !GetIconInfo(icon.get(), &info)) return {};
    const unique_hgdiobj bitmap(info.hbmColor), mask(info.hbmMask);
    BITMAP header{};
    GetObjectW(info.hbmColor, sizeof(header), &header);
    solid_pixels p{header.bmWidth};
    std::vector<uint32_t> argb(size_t(p.size) * p.size);
    BITMAPINFO request{{sizeof(BITMAPINFOHEADER), p.size, -p.size, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
    const HDC screen = GetDC(nullptr);
    GetDIBits(screen, info.hbmColor, 0, static_cast<UINT>(p.size), argb.data(), &request, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    for (LONG i = 0; i < p.size * p.size; ++i) {
        if (argb[i] >> 24 != 0xFF) continue;
        ++p.count;
        p.other_colour += argb[i] != colour;
        p.box = {std::min(p.box.left, i % p.size), std::min(p.box.top, i / p.size), std::max(p.box.right, i % p.size),
                 std::max(p.box.bottom, i / p.size)};
    }
    return p;
}

class microphone_icon : public testing::Test {
protected:
    void SetUp() override {
        gdiplus.start();
        ASSERT_NE(gdiplus.token(), 0u);
    }
    gdiplus_session gdiplus;
};

}  // namespace

// Neither icon font exists under Wine: the drawn microphone stands in, in the state's colour, filling
// the 32-pixel icon from top to bottom, and struck through (so wider) when muted. Where a font has the
// glyph, the glyph is fitted the same way: a tall I touches top and bottom, centred across, at 48.
TEST_F(microphone_icon, draws_the_state_in_its_colour_filling_the_icon) {
    ASSERT_LT(GetSystemMetrics(SM_CXSMICON), 32);
    for (const bool dark : {false, true}) {
        RECT on{};
        for (const bool muted : {false, true}) {
            SCOPED_TRACE(fmt::format("dark={} muted={}", dark, muted));
            const uint32_t colour = microphone::icon_colour(muted, dark);
            const solid_pixels p = read_icon(microphone::render_microphone_icon(muted, dark), colour);
            EXPECT_EQ(p.size, 32);
            EXPECT_GT(p.count, 100);
            EXPECT_EQ(p.other_colour, 0);
            EXPECT_TRUE(p.box.top <= 1 && p.box.bottom >= 30) << p.box.top << ".." << p.box.bottom;
            EXPECT_TRUE(!muted || (p.box.left < on.left && p.box.right > on.right));
            on = p.box;
        }
    }
    const solid_pixels i =
        read_icon(microphone::render_glyph_icon({L"No Such Icon Font", L"DejaVu Sans"}, U'I', false, 0xFF0000FF, 48),
                  0xFF0000FF);
    EXPECT_EQ(i.size, 48);
    EXPECT_TRUE(i.box.top <= 1 && i.box.bottom >= 46) << i.box.top << ".." << i.box.bottom;
    EXPECT_LE(std::abs(i.box.left + i.box.right - 47), 2) << i.box.left << ".." << i.box.right;
    EXPECT_LT(i.box.right - i.box.left, 24) << "the font's narrow I, not the drawn microphone";
}

// 200 renders leave no GDI object behind. The time of one render is printed as a ratio to a bare
// bitmap made into an icon; no test asserts a time.
TEST_F(microphone_icon, renders_release_every_gdi_object_and_report_their_cost) {
    const auto gdi_objects = [] { return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS); };
    DestroyIcon(microphone::render_microphone_icon(false, false));
    const DWORD before = gdi_objects();
    const auto timed = [](auto&& render) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < 200; ++i) DestroyIcon(render(i));
        return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count() / 200;
    };
    const double render_us = timed([](int i) { return microphone::render_microphone_icon(i % 2, i % 3 == 0); });
    EXPECT_LE(gdi_objects(), before + 2) << "a leak of one object a render shows as hundreds";
    const double bare_us = timed([](int) {
        Gdiplus::GpBitmap* bitmap = nullptr;
        HICON icon = nullptr;
        Gdiplus::DllExports::GdipCreateBitmapFromScan0(32, 32, 0, PixelFormat32bppARGB, nullptr, &bitmap);
        Gdiplus::DllExports::GdipCreateHICONFromBitmap(bitmap, &icon);
        Gdiplus::DllExports::GdipDisposeImage(bitmap);
        return icon;
    });
    std::cout << fmt::format("render_microphone_icon: {:.1f} us, {:.1f} times a bare icon of {:.1f} us\n", render_us,
                             render_us / bare_us, bare_us);
}
