#include "common/wine_process_win32.h"
#include "platform/gdiplus_session_win32.h"
#include "platform/unique_resource_win32.h"
#include "presentation/tray_badge.h"
#include "presentation/tray_icon_win32.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <vector>

namespace {

// 0xAARRGGBB pixels of a bitmap, top-down.
struct pixels {
    int width = 0, height = 0;
    std::vector<uint32_t> argb;
    uint32_t at(int x, int y) const { return argb[static_cast<size_t>(y) * width + x]; }
};

pixels read_bitmap(HBITMAP bitmap) {
    BITMAP info{};
    GetObjectW(bitmap, sizeof(info), &info);
    pixels p{info.bmWidth, std::abs(info.bmHeight), std::vector<uint32_t>(size_t(info.bmWidth) * std::abs(info.bmHeight))};
    BITMAPINFO request{{sizeof(BITMAPINFOHEADER), p.width, -p.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
    const HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, static_cast<UINT>(p.height), p.argb.data(), &request, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    return p;
}

// The colour bitmap of an icon that the caller owns.
pixels read_icon(const unique_hicon& icon) {
    ICONINFO info{};
    if (!icon || !GetIconInfo(icon.get(), &info)) return {};
    const unique_hgdiobj colour(info.hbmColor), mask(info.hbmMask);
    return read_bitmap(info.hbmColor);
}

// Whether a premultiplied pixel, partly covered, shows `rgb` (0x00RRGGBB) within a small tolerance.
bool shows(uint32_t argb, uint32_t rgb) {
    const uint32_t alpha = argb >> 24;
    if (alpha < 0x40) return false;
    for (int shift = 0; shift < 24; shift += 8) {
        const int channel = static_cast<int>(((argb >> shift) & 0xFF) * 255 / alpha);
        if (std::abs(channel - static_cast<int>((rgb >> shift) & 0xFF)) > 24) return false;
    }
    return true;
}

// The product's own logo: icon resource 101 of the real exe, opened as data.
class tray_icon_render : public testing::Test {
protected:
    void SetUp() override {
        exe.reset(LoadLibraryExW((test_support::this_program().parent_path() / L"Veldrake.SystemTray.exe").c_str(),
                                 nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
        ASSERT_TRUE(exe) << "Veldrake.SystemTray.exe beside the tests";
        gdiplus.start();
        ASSERT_NE(gdiplus.token(), 0u);
    }
    HINSTANCE module() const { return static_cast<HINSTANCE>(exe.get()); }

    gdiplus_session gdiplus;
    unique_hmodule exe;
};

}  // namespace

TEST_F(tray_icon_render, badge_fills_the_lower_left_circle_and_outlines_it_by_theme) {
    const pixels logo = read_icon(unique_hicon(render_badge_icon(false, 0, false, module())));
    ASSERT_EQ(logo.width, 32);
    for (const bool dark : {false, true}) {
        for (const uint32_t colour : {tray_badge::red, tray_badge::gold}) {
            SCOPED_TRACE(fmt::format("dark={} colour={:08X}", dark, colour));
            const pixels p = read_icon(unique_hicon(render_badge_icon(true, colour, dark, module())));
            ASSERT_TRUE(p.width == 32 && p.height == 32) << p.width << "x" << p.height;
            // The middle of the circle (x 0.5 to 12.5, y 19 to 31) is the badge's colour, opaque.
            for (const auto& [x, y] : {std::pair{6, 25}, std::pair{3, 24}, std::pair{9, 27}}) {
                EXPECT_EQ(p.at(x, y), colour) << x << "," << y;
            }
            // The outline: the topmost and bottommost pixels of its colour in the middle column.
            int top = 32, bottom = -1;
            for (int y = 14; y < 32; ++y) {
                if (p.at(6, y) >> 24 != 0 && ((p.at(6, y) ^ tray_badge::badge_outline(dark)) & 0xFFFFFF) == 0) {
                    top = std::min(top, y);
                    bottom = std::max(bottom, y);
                }
            }
            EXPECT_TRUE(top == 18 || top == 19) << top;
            EXPECT_GE(bottom, 30);
            // Away from the badge the logo is untouched.
            for (const auto& [x, y] : {std::pair{16, 8}, std::pair{26, 26}, std::pair{0, 0}, std::pair{31, 10}}) {
                EXPECT_EQ(p.at(x, y), logo.at(x, y)) << x << "," << y;
            }
        }
    }
    const unique_hmodule no_logo(LoadLibraryExW(L"kernel32.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE));
    EXPECT_EQ(render_badge_icon(true, tray_badge::red, false, static_cast<HINSTANCE>(no_logo.get())), nullptr);
}

TEST_F(tray_icon_render, renders_release_every_gdi_object_they_make) {
    const auto gdi_objects = [] { return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS); };
    // The first render loads what stays for the process: the logo resource, GDI+ caches.
    unique_hicon(render_badge_icon(true, tray_badge::red, false, module()));
    const DWORD before = gdi_objects();
    for (int i = 0; i < 200; ++i) {
        unique_hicon(render_badge_icon(true, i % 2 ? tray_badge::red : tray_badge::gold, i % 3 == 0, module()));
        unique_hgdiobj(render_status_dot(tray_badge::green, i % 2 == 0 ? 0xFF000000 : 0xFFD3D3D3));
    }
    EXPECT_LE(gdi_objects(), before + 2) << "a leak of one object a render shows as hundreds";
}

TEST_F(tray_icon_render, status_dot_is_a_premultiplied_circle_on_transparent_pixels) {
    const int size = GetSystemMetrics(SM_CXSMICON);
    // The rings of the light and dark menus, and of a contrast menu with white text.
    for (const uint32_t ring : {0xFFD3D3D3u, 0xFF000000u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(ring);
        const unique_hgdiobj dot(render_status_dot(tray_badge::green, ring));
        const pixels p = read_bitmap(static_cast<HBITMAP>(dot.get()));
        ASSERT_TRUE(p.width == size && p.height == size) << p.width << "x" << p.height;
        EXPECT_EQ(p.at(size / 2, size / 2), tray_badge::green);
        EXPECT_EQ(p.at(0, 0), 0u);
        EXPECT_EQ(p.at(2, size / 2), 0u) << "5 pixels of margin";
        // On the top of the circle sits the anti-aliased ring.
        bool found = false;
        for (int y = 3; y <= 6; ++y) found = found || shows(p.at(size / 2, y), ring & 0xFFFFFF);
        EXPECT_TRUE(found);
    }
}

// The logo in every size that a notification area or a shortcut asks for, at every scale. (The other
// icon files are for subsystems not built yet.)
TEST(icon_files, the_logo_holds_every_size_from_16_to_256) {
    std::ifstream in(test_support::this_program().parent_path() / L"Content\\Icons\\veldrake-logo-ai.ico", std::ios::binary);
    unsigned char header[6] = {}, entry[16] = {};
    in.read(reinterpret_cast<char*>(header), 6);
    std::set<int> sizes;
    for (int i = 0; i < (header[4] | header[5] << 8) && in.read(reinterpret_cast<char*>(entry), 16); ++i) {
        sizes.insert(entry[0] == 0 ? 256 : entry[0]);
    }
    EXPECT_EQ(sizes, (std::set<int>{16, 20, 24, 32, 40, 48, 64, 256}));
}
