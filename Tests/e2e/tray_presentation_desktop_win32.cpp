#include "e2e/tray_presentation_desktop_win32.h"

#include "common/pixels_win32.h"
#include "common/wine_process_win32.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace desktop {

namespace {

std::string quoted(const std::filesystem::path& p) { return "'" + unix_path(p) + "'"; }

// The screen's pixels in `area`, 0x00RRGGBB row by row, read back through GDI.
std::vector<uint32_t> capture(const RECT& area) {
    const int width = area.right - area.left, height = area.bottom - area.top;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const unique_hgdiobj bitmap(CreateCompatibleBitmap(screen, width, height));
    const HGDIOBJ old = SelectObject(memory, bitmap.get());
    BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return test_pixels::read_bitmap(static_cast<HBITMAP>(bitmap.get())).argb;
}

}  // namespace

std::string unix_path(const std::filesystem::path& windows_path) {
    // Wine's own converter; it allocates from the process heap.
    using converter = char*(CDECL*)(LPCWSTR);
    static const auto to_unix = reinterpret_cast<converter>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    char* converted = to_unix ? to_unix(std::filesystem::absolute(windows_path).c_str()) : nullptr;
    if (!converted) return {};
    std::string result = converted;
    HeapFree(GetProcessHeap(), 0, converted);
    return result;
}

std::optional<int> run_unix(const std::string& command, std::chrono::milliseconds timeout) {
    const auto marker = test_support::fresh_folder(L"desktop") / L"exit-code";
    const std::string script = command + "; echo $? > " + quoted(marker);
    std::wstring line = L"/bin/sh -c \"" + std::wstring(script.begin(), script.end()) + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info)) return {};
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
    int code = -1;
    if (!test_support::poll_until([&] { return static_cast<bool>(std::ifstream(marker) >> code); }, timeout)) return {};
    return code;
}

bool click(POINT at, int button, int count) {
    // No --sync: it waits for a motion that never comes when the pointer is already there. The X server
    // takes the move and the click in order all the same.
    std::string command = "xdotool mousemove " + std::to_string(at.x) + " " + std::to_string(at.y);
    if (button != 0) {
        command += count > 1 ? " click --repeat " + std::to_string(count) + " --delay 80 " : " click ";
        command += std::to_string(button);
    }
    return run_unix(command) == 0;
}

bool click_empty_desktop() { return click({300, 200}, 1); }

std::optional<RECT> find_colour(const RECT& area, uint32_t rgb, int tolerance) {
    const std::vector<uint32_t> pixels = capture(area);
    std::optional<RECT> box;
    for (int y = area.top; y < area.bottom; ++y) {
        for (int x = area.left; x < area.right; ++x) {
            const uint32_t v = pixels[static_cast<size_t>(y - area.top) * (area.right - area.left) + (x - area.left)];
            const auto off = [&](int shift) { return std::abs(int((v >> shift) & 0xFF) - int((rgb >> shift) & 0xFF)); };
            if (std::max({off(0), off(8), off(16)}) > tolerance) continue;
            const RECT pixel{x, y, x + 1, y + 1};
            if (!box) box = pixel;
            UnionRect(&*box, &*box, &pixel);
        }
    }
    return box;
}

std::optional<RECT> find_tray_icon() {
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    return find_colour({width / 2, height - 24, width, height}, 0x0E5A6B, 16);
}

POINT centre(const RECT& r) { return {(r.left + r.right) / 2, (r.top + r.bottom) / 2}; }

RECT menu_item(HWND menu, int n) {
    RECT item{};
    GetClientRect(menu, &item);
    const LONG height = (item.bottom - 9) / 6;
    item.top = height * (n - 1) + (n == 6 ? 9 : 0);
    item.bottom = item.top + height;
    MapWindowPoints(menu, nullptr, reinterpret_cast<POINT*>(&item), 2);
    return item;
}

}  // namespace desktop
