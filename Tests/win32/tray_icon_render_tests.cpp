#include "common/wine_process_win32.h"
#include "platform/gdiplus_session_win32.h"
#include "platform/unique_resource_win32.h"
#include "tray_badge.h"
#include "tray_icon_win32.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

// The product's own logo: icon resource 101 of the real exe, opened as data.
class tray_icon_render : public testing::Test {
protected:
    void SetUp() override {
        exe.reset(LoadLibraryExW((test_support::this_program().parent_path() / L"Veldrake.SystemTray.exe").c_str(),
                                 nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
        ASSERT_TRUE(exe) << "Veldrake.SystemTray.exe beside the tests";
        ASSERT_NE(gdiplus.token(), 0u);
    }
    HINSTANCE module() const { return static_cast<HINSTANCE>(exe.get()); }

    gdiplus_session gdiplus;
    unique_hmodule exe;
};

// 0xAARRGGBB pixels of an icon's colour image, top-down.
struct pixels {
    int width = 0, height = 0;
    std::vector<uint32_t> argb;
    uint32_t at(int x, int y) const { return argb[static_cast<size_t>(y) * width + x]; }
};

pixels read_bitmap(HBITMAP bitmap) {
    BITMAP info{};
    GetObjectW(bitmap, sizeof(info), &info);
    pixels p;
    p.width = info.bmWidth;
    p.height = info.bmHeight < 0 ? -info.bmHeight : info.bmHeight;
    p.argb.resize(static_cast<size_t>(p.width) * p.height);
    BITMAPINFO request{};
    request.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    request.bmiHeader.biWidth = p.width;
    request.bmiHeader.biHeight = -p.height;
    request.bmiHeader.biPlanes = 1;
    request.bmiHeader.biBitCount = 32;
    const HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, static_cast<UINT>(p.height), p.argb.data(), &request, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    return p;
}

pixels read_icon(HICON icon) {
    ICONINFO info{};
    if (!GetIconInfo(icon, &info)) return {};
    const unique_hgdiobj colour(info.hbmColor), mask(info.hbmMask);
    return read_bitmap(info.hbmColor);
}

uint32_t rgb(uint32_t argb) { return argb & 0xFFFFFF; }

// Whether a premultiplied pixel, partly covered, shows `colour` (0xRRGGBB) within a small tolerance.
bool unpremultiplied_near(uint32_t argb, uint32_t colour) {
    const uint32_t alpha = argb >> 24;
    if (alpha < 0x40) return false;
    for (int shift = 0; shift < 24; shift += 8) {
        const int channel = static_cast<int>(((argb >> shift) & 0xFF) * 255 / alpha);
        const int wanted = static_cast<int>((colour >> shift) & 0xFF);
        if (std::abs(channel - wanted) > 24) return false;
    }
    return true;
}

}  // namespace

TEST_F(tray_icon_render, badge_fills_the_lower_left_circle_and_outlines_it_by_theme) {
    const unique_hicon plain(render_badge_icon(false, 0, false, module()));
    ASSERT_TRUE(plain);
    const pixels logo = read_icon(plain.get());
    ASSERT_EQ(logo.width, 32);

    const struct {
        bool dark;
        uint32_t colour;
    } cases[] = {{false, tray_badge::red}, {true, tray_badge::red}, {false, tray_badge::gold}, {true, tray_badge::gold}};
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("dark={} colour={:08X}", c.dark, c.colour));
        const unique_hicon badged(render_badge_icon(true, c.colour, c.dark, module()));
        ASSERT_TRUE(badged);
        const pixels p = read_icon(badged.get());
        ASSERT_EQ(p.width, 32);
        ASSERT_EQ(p.height, 32);
        // The middle of the circle (x 0.5 to 12.5, y 19 to 31) is the badge's colour, opaque.
        for (const auto& [x, y] : {std::pair{6, 25}, std::pair{3, 24}, std::pair{9, 27}}) {
            EXPECT_EQ(p.at(x, y), c.colour) << x << "," << y;
        }
        // The outline: the topmost and bottommost coloured pixels of the middle column.
        const uint32_t outline = rgb(tray_badge::badge_outline(c.dark));
        int top = 32, bottom = -1;
        for (int y = 14; y < 32; ++y) {
            if (rgb(p.at(6, y)) == outline && (p.at(6, y) >> 24) != 0) {
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
        EXPECT_GE(top, 18);
        EXPECT_LE(top, 19);
        EXPECT_GE(bottom, 30);
        // Away from the badge the logo is untouched.
        for (const auto& [x, y] : {std::pair{16, 8}, std::pair{26, 26}, std::pair{0, 0}, std::pair{31, 10}}) {
            EXPECT_EQ(p.at(x, y), logo.at(x, y)) << x << "," << y;
        }
    }
}

// Not a test of speed: the figure goes to the output, for the report of each run.
TEST_F(tray_icon_render, measures_a_badge_render) {
    constexpr int renders = 200;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < renders; ++i) {
        const unique_hicon icon(render_badge_icon(true, tray_badge::gold, false, module()));
        ASSERT_TRUE(icon);
    }
    const auto total = std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start);
    std::printf("[ measured ] render_badge_icon: %.0f us per icon over %d\n", total.count() / renders, renders);
}

TEST_F(tray_icon_render, no_logo_no_icon) {
    const unique_hmodule no_resources(LoadLibraryExW(L"kernel32.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE));
    EXPECT_EQ(render_badge_icon(true, tray_badge::red, false, static_cast<HINSTANCE>(no_resources.get())), nullptr);
}

TEST_F(tray_icon_render, status_dot_is_a_premultiplied_circle_on_transparent_pixels) {
    const int size = GetSystemMetrics(SM_CXSMICON);
    for (const bool dark : {false, true}) {
        SCOPED_TRACE(dark ? "dark" : "light");
        const unique_hgdiobj dot(render_status_dot(tray_badge::green, dark));
        ASSERT_TRUE(dot);
        const pixels p = read_bitmap(static_cast<HBITMAP>(dot.get()));
        ASSERT_EQ(p.width, size);
        ASSERT_EQ(p.height, size);
        EXPECT_EQ(p.at(size / 2, size / 2), tray_badge::green);
        EXPECT_EQ(p.at(0, 0), 0u);
        EXPECT_EQ(p.at(size - 1, size - 1), 0u);
        EXPECT_EQ(p.at(2, size / 2), 0u) << "5 pixels of margin";
        // On the top of the circle sits the anti-aliased outline, grey in light, black in dark.
        const uint32_t outline = rgb(tray_badge::dot_outline(dark));
        bool found = false;
        for (int y = 3; y <= 6; ++y) found = found || unpremultiplied_near(p.at(size / 2, y), outline);
        EXPECT_TRUE(found);
    }
}
