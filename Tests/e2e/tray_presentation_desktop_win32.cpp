#include "e2e/tray_presentation_desktop_win32.h"

#include "common/wine_process_win32.h"

#include <atomic>
#include <cstdlib>
#include <fstream>

namespace desktop {

namespace {

std::filesystem::path scratch_folder() {
    const auto folder = std::filesystem::temp_directory_path() / L"veldrake-desktop";
    std::filesystem::create_directories(folder);
    return folder;
}

std::string quoted(const std::filesystem::path& p) { return "'" + unix_path(p) + "'"; }

}  // namespace

std::string unix_path(const std::filesystem::path& windows_path) {
    // Wine's own converter; it allocates from the process heap.
    using converter = char*(CDECL*)(LPCWSTR);
    static const auto to_unix = reinterpret_cast<converter>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    if (!to_unix) return {};
    char* converted = to_unix(std::filesystem::absolute(windows_path).c_str());
    if (!converted) return {};
    std::string result = converted;
    HeapFree(GetProcessHeap(), 0, converted);
    return result;
}

std::optional<int> run_unix(const std::string& command, std::chrono::milliseconds timeout) {
    static std::atomic<int> counter{0};
    const auto marker = scratch_folder() / (L"done-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                                            std::to_wstring(counter++));
    std::error_code ignored;
    std::filesystem::remove(marker, ignored);
    const std::string script = command + "; echo $? > " + quoted(marker);
    std::wstring line = L"/bin/sh -c \"" + std::wstring(script.begin(), script.end()) + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info)) {
        return std::nullopt;
    }
    if (info.hThread) CloseHandle(info.hThread);
    if (info.hProcess) CloseHandle(info.hProcess);
    std::optional<int> code;
    test_support::poll_until(
        [&] {
            std::ifstream in(marker);
            int value = 0;
            if (in >> value) code = value;
            return code.has_value();
        },
        timeout);
    std::filesystem::remove(marker, ignored);
    return code;
}

bool click(POINT at, int button) {
    // No --sync: it waits for a motion that never comes when the pointer is already there. The X server
    // takes the move and the click in order all the same.
    return run_unix("xdotool mousemove " + std::to_string(at.x) + " " + std::to_string(at.y) + " click " +
                    std::to_string(button)) == 0;
}

bool double_click(POINT at) {
    return run_unix("xdotool mousemove " + std::to_string(at.x) + " " + std::to_string(at.y) +
                    " click --repeat 2 --delay 80 1") == 0;
}

bool click_empty_desktop() { return click({300, 200}, 1); }

bool screenshot(const std::filesystem::path& file) {
    std::filesystem::create_directories(file.parent_path());
    return run_unix("import -window root " + quoted(file)) == 0;
}

bool crop(const std::filesystem::path& from, const std::filesystem::path& to, const RECT& area) {
    const std::string geometry = std::to_string(area.right - area.left) + "x" + std::to_string(area.bottom - area.top) +
                                 "+" + std::to_string(area.left) + "+" + std::to_string(area.top);
    return run_unix("convert " + quoted(from) + " -crop " + geometry + " +repage " + quoted(to)) == 0;
}

std::filesystem::path artifacts_folder() {
    const auto folder = test_support::this_program().parent_path().parent_path() / L"artifacts" / L"tray_presentation";
    std::filesystem::create_directories(folder);
    return folder;
}

screen_pixels capture(const RECT& area) {
    screen_pixels p;
    p.area = area;
    const int width = area.right - area.left, height = area.bottom - area.top;
    p.rgb.assign(static_cast<size_t>(width) * height, 0);
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const HBITMAP section = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (section && bits) {
        const HGDIOBJ old = SelectObject(memory, section);
        BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
        GdiFlush();
        const auto* source = static_cast<const uint32_t*>(bits);
        for (size_t i = 0; i < p.rgb.size(); ++i) p.rgb[i] = source[i] & 0xFFFFFF;
        SelectObject(memory, old);
    }
    if (section) DeleteObject(section);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return p;
}

RECT notification_area() {
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    return {width / 2, height - 24, width, height};
}

std::optional<RECT> find_colour(const screen_pixels& pixels, uint32_t rgb, int tolerance) {
    std::optional<RECT> box;
    for (int y = pixels.area.top; y < pixels.area.bottom; ++y) {
        for (int x = pixels.area.left; x < pixels.area.right; ++x) {
            const uint32_t v = pixels.at(x, y);
            bool close_enough = true;
            for (int shift = 0; shift < 24; shift += 8) {
                close_enough = close_enough && std::abs(static_cast<int>((v >> shift) & 0xFF) - static_cast<int>((rgb >> shift) & 0xFF)) <=
                                   tolerance;
            }
            if (!close_enough) continue;
            if (!box) {
                box = RECT{x, y, x + 1, y + 1};
            } else {
                box->left = std::min<LONG>(box->left, x);
                box->top = std::min<LONG>(box->top, y);
                box->right = std::max<LONG>(box->right, x + 1);
                box->bottom = std::max<LONG>(box->bottom, y + 1);
            }
        }
    }
    return box;
}

HWND find_popup_menu(DWORD process_id) {
    HWND found = nullptr;
    while ((found = FindWindowExW(nullptr, found, L"#32768", nullptr)) != nullptr) {
        DWORD owner = 0;
        GetWindowThreadProcessId(found, &owner);
        if (owner == process_id && IsWindowVisible(found)) return found;
    }
    return nullptr;
}

}  // namespace desktop
