#include "common/wine_process_win32.h"
#include "platform/unique_resource_win32.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <vector>

namespace {

std::filesystem::path icons_folder() { return test_support::this_program().parent_path() / L"Content" / L"Icons"; }

// The sizes an .ico file holds, from its directory.
std::set<int> sizes_in(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    unsigned char header[6] = {};
    in.read(reinterpret_cast<char*>(header), 6);
    std::set<int> sizes;
    for (int i = 0; i < (header[4] | header[5] << 8); ++i) {
        unsigned char entry[16] = {};
        in.read(reinterpret_cast<char*>(entry), 16);
        sizes.insert(entry[0] == 0 ? 256 : entry[0]);
    }
    return sizes;
}

// One pixel of the icon as the platform loads it at `size`, 0xAARRGGBB.
uint32_t pixel(const std::filesystem::path& file, int size, int x, int y) {
    const unique_hicon icon(
        static_cast<HICON>(LoadImageW(nullptr, file.c_str(), IMAGE_ICON, size, size, LR_LOADFROMFILE)));
    if (!icon) return 0;
    ICONINFO info{};
    GetIconInfo(icon.get(), &info);
    const unique_hgdiobj colour(info.hbmColor), mask(info.hbmMask);
    std::vector<uint32_t> bits(static_cast<size_t>(size) * size);
    BITMAPINFO request{};
    request.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    request.bmiHeader.biWidth = size;
    request.bmiHeader.biHeight = -size;
    request.bmiHeader.biPlanes = 1;
    request.bmiHeader.biBitCount = 32;
    const HDC screen = GetDC(nullptr);
    GetDIBits(screen, info.hbmColor, 0, static_cast<UINT>(size), bits.data(), &request, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    return bits[static_cast<size_t>(y) * size + x];
}

bool close_to(uint32_t argb, uint32_t rgb) {
    if ((argb >> 24) != 0xFF) return false;
    for (int shift = 0; shift < 24; shift += 8) {
        if (std::abs(static_cast<int>((argb >> shift) & 0xFF) - static_cast<int>((rgb >> shift) & 0xFF)) > 8) return false;
    }
    return true;
}

}  // namespace

TEST(icon_files, each_holds_every_size_from_16_to_256) {
    const std::set<int> expected{16, 20, 24, 32, 40, 48, 64, 256};
    for (const wchar_t* name : {L"veldrake-logo-ai.ico", L"tessary_indexing-complete.ico",
                                L"tessary_indexing-in-progress.ico", L"tessary_indexing-problem.ico"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
        EXPECT_EQ(sizes_in(icons_folder() / name), expected);
    }
}

TEST(icon_files, indexing_states_differ_by_their_badge_at_16_and_32_pixels) {
    const struct {
        const wchar_t* name;
        uint32_t badge;  // 0xRRGGBB
    } cases[] = {{L"tessary_indexing-complete.ico", 0x23A047},
                 {L"tessary_indexing-in-progress.ico", 0xE08A00},
                 {L"tessary_indexing-problem.ico", 0xD32F2F}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.name)));
        // Inside the badge at the lower right, clear of its white sign.
        const uint32_t small = pixel(icons_folder() / c.name, 16, 14, 13);
        const uint32_t large = pixel(icons_folder() / c.name, 32, 28, 26);
        EXPECT_TRUE(close_to(small, c.badge)) << fmt::format("{:08X} at 16 pixels", small);
        EXPECT_TRUE(close_to(large, c.badge)) << fmt::format("{:08X} at 32 pixels", large);
        // And the card they share, at the upper left.
        EXPECT_TRUE(close_to(pixel(icons_folder() / c.name, 16, 2, 10), 0x44586A));
    }
}
