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
#include <fstream>
#include <set>

using test_pixels::argb_pixels;
using test_pixels::read_icon;

namespace {

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
    const argb_pixels logo = read_icon(unique_hicon(render_badge_icon(false, 0, false, module())));
    ASSERT_EQ(logo.width, 32);
    for (const bool dark : {false, true}) {
        for (const uint32_t colour : {tray_badge::red, tray_badge::gold}) {
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
            // Away from the badge the logo is untouched.
            for (const auto& [x, y] : {std::pair{16, 8}, std::pair{26, 26}, std::pair{0, 0}, std::pair{31, 10}}) {
                EXPECT_EQ(p.at(x, y), logo.at(x, y)) << x << "," << y;
            }
        }
    }
    const unique_hmodule no_logo(LoadLibraryExW(L"kernel32.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE));
    EXPECT_EQ(render_badge_icon(true, tray_badge::red, false, static_cast<HINSTANCE>(no_logo.get())), nullptr);
}

TEST_F(icon_render, status_dot_is_a_premultiplied_circle_on_transparent_pixels) {
    const int size = GetSystemMetrics(SM_CXSMICON);
    // The rings of the light and dark menus, and of a contrast menu with white text.
    for (const uint32_t ring : {0xFFD3D3D3u, 0xFF000000u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(ring);
        const unique_hgdiobj dot(render_status_dot(tray_badge::green, ring));
        const argb_pixels p = test_pixels::read_bitmap(static_cast<HBITMAP>(dot.get()));
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

// Neither icon font exists under Wine: the drawn microphone stands in, in the state's colour, filling
// the 32-pixel icon from top to bottom, and struck through (so wider) when muted. Where a font has the
// glyph, the glyph is fitted the same way: a tall I touches top and bottom, centred across, at 48.
TEST_F(icon_render, microphone_draws_the_state_in_its_colour_filling_the_icon) {
    ASSERT_LT(GetSystemMetrics(SM_CXSMICON), 32);
    for (const bool dark : {false, true}) {
        RECT on{};
        for (const bool muted : {false, true}) {
            SCOPED_TRACE(fmt::format("dark={} muted={}", dark, muted));
            const uint32_t colour = microphone::icon_colour(muted, dark);
            const argb_pixels icon = read_icon(unique_hicon(microphone::render_microphone_icon(muted, dark)));
            const solid_pixels p = solid(icon, colour);
            EXPECT_EQ(icon.width, 32);
            EXPECT_GT(p.count, 100);
            EXPECT_EQ(p.other_colour, 0);
            EXPECT_TRUE(p.box.top <= 1 && p.box.bottom >= 30) << p.box.top << ".." << p.box.bottom;
            EXPECT_TRUE(!muted || (p.box.left < on.left && p.box.right > on.right));
            on = p.box;
        }
    }
    const unique_hicon glyph_icon(
        microphone::render_glyph_icon({L"No Such Icon Font", L"DejaVu Sans"}, U'I', false, 0xFF0000FF, 48));
    const argb_pixels glyph = read_icon(glyph_icon);
    const solid_pixels i = solid(glyph, 0xFF0000FF);
    EXPECT_EQ(glyph.width, 48);
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
