#include "common/wine_process_win32.h"
#include "microphone/microphone_icon_win32.h"
#include "platform/gdiplus_session_win32.h"
#include "platform/unique_resource_win32.h"
#include "presentation/tray_badge.h"
#include "presentation/tray_icon_win32.h"
#include "common/pixels_win32.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>

using test_pixels::argb_pixels;
using test_pixels::read_icon;

namespace {

// What an icon shows: the box of its opaque pixels, how many there are and how many of them are not
// `colour`.
struct solid_pixels {
    int count = 0, other_colour = 0;
    RECT box{1000, 1000, -1, -1};
};

solid_pixels solid(const argb_pixels& p, uint32_t colour) {
    solid_pixels s;
    for (LONG y = 0; y < p.height; ++y) {
        for (LONG x = 0; x < p.width; ++x) {
            if (p.at(x, y) >> 24 != 0xFF) continue;
            ++s.count;
            s.other_colour += p.at(x, y) != colour;
            s.box = {std::min(s.box.left, x), std::min(s.box.top, y), std::max(s.box.right, x),
                     std::max(s.box.bottom, y)};
        }
    }
    return s;
}

// GDI+ started, and the product's own logo: icon resource 101 of the real exe, opened as data.
class icon_render : public testing::Test {
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

TEST_F(icon_render, badge_fills_the_lower_left_circle_and_outlines_it_by_theme) {
    // The colour is passed through as it stands (which colour, the native tests pin): one per theme.
    for (const auto& [dark, colour] : {std::pair{false, tray_badge::red}, std::pair{true, tray_badge::gold}}) {
        SCOPED_TRACE(fmt::format("dark={} colour={:08X}", dark, colour));
        const argb_pixels p = read_icon(unique_hicon(render_badge_icon(true, colour, dark, module())));
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
    }
}

// Neither icon font exists under Wine: the drawn microphone stands in, in the state's colour, filling
// the 32-pixel icon from top to bottom, and struck through (so wider) when muted. Where a font has the
// glyph, the glyph is fitted the same way: a tall I touches top and bottom, centred across, at 48.
TEST_F(icon_render, microphone_draws_the_state_in_its_colour_filling_the_icon) {
    // Dark only: the theme only picks the colour, which the native tests pin, and light's glyphs show on
    // the end-to-end tier's taskbar, which stays white under Wine.
    RECT on{};
    for (const bool muted : {false, true}) {
        SCOPED_TRACE(muted ? "muted" : "on");
        const uint32_t colour = microphone::icon_colour(muted, true);
        const argb_pixels icon = read_icon(unique_hicon(microphone::render_microphone_icon(muted, true)));
        const solid_pixels p = solid(icon, colour);
        EXPECT_GT(p.count, 100);
        EXPECT_EQ(p.other_colour, 0);
        EXPECT_TRUE(p.box.top <= 1 && p.box.bottom >= 30) << p.box.top << ".." << p.box.bottom;
        EXPECT_TRUE(!muted || (p.box.left < on.left && p.box.right > on.right));
        on = p.box;
    }
    const unique_hicon glyph_icon(
        microphone::render_glyph_icon({L"No Such Icon Font", L"DejaVu Sans"}, U'I', false, 0xFF0000FF, 48));
    const argb_pixels glyph = read_icon(glyph_icon);
    const solid_pixels i = solid(glyph, 0xFF0000FF);
    EXPECT_TRUE(i.box.top <= 1 && i.box.bottom >= 46) << i.box.top << ".." << i.box.bottom;
    EXPECT_LE(std::abs(i.box.left + i.box.right - 47), 2) << i.box.left << ".." << i.box.right;
    EXPECT_LT(i.box.right - i.box.left, 24) << "the font's narrow I, not the drawn microphone";
}

// 200 renders of each kind leave no GDI object behind (a leak of one object a render shows as
// hundreds). What a render costs is scripts/bench's.
TEST_F(icon_render, renders_release_every_gdi_object) {
    const auto gdi_objects = [] { return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS); };
    // The first renders load what stays for the process: the logo resource, GDI+ caches.
    DestroyIcon(render_badge_icon(true, tray_badge::red, false, module()));
    DestroyIcon(microphone::render_microphone_icon(false, false));
    const DWORD before = gdi_objects();
    for (int i = 0; i < 200; ++i) {
        unique_hicon(render_badge_icon(true, i % 2 ? tray_badge::red : tray_badge::gold, i % 3 == 0, module()));
        unique_hgdiobj(render_status_dot(tray_badge::green, i % 2 == 0 ? 0xFF000000 : 0xFFD3D3D3));
        unique_hicon(microphone::render_microphone_icon(i % 2, i % 3 == 0));
    }
    EXPECT_LE(gdi_objects(), before + 2);
}
