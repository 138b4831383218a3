#include "presentation/tray_icon_win32.h"

#include <gdiplus.h>

#include "logging/log.h"
#include "platform/unique_resource_win32.h"
#include "presentation/tray_badge.h"
#include "tray_messages.h"
#include "tray_window_win32.h"

#include <shellapi.h>

#include <cstring>
#include <exception>

namespace gp = Gdiplus::DllExports;

namespace {

constexpr WORD LOGO_RESOURCE = 101;
constexpr UINT NOTIFY_DATA_SIZE = 976;  // the full NOTIFYICONDATAW of Vista and later
static_assert(sizeof(NOTIFYICONDATAW) == NOTIFY_DATA_SIZE);

// Owners for the flat GDI+ objects.
struct gdiplus_objects {
    Gdiplus::GpBitmap* bitmap = nullptr;
    Gdiplus::GpGraphics* graphics = nullptr;
    Gdiplus::GpSolidFill* brush = nullptr;
    Gdiplus::GpPen* pen = nullptr;
    ~gdiplus_objects() {
        if (pen) gp::GdipDeletePen(pen);
        if (brush) gp::GdipDeleteBrush(brush);
        if (graphics) gp::GdipDeleteGraphics(graphics);
        if (bitmap) gp::GdipDisposeImage(bitmap);
    }
};

HICON badge_icon(HICON logo, uint32_t colour, bool dark) {
    gdiplus_objects o;
    if (gp::GdipCreateBitmapFromHICON(logo, &o.bitmap) != Gdiplus::Ok) return nullptr;
    if (gp::GdipGetImageGraphicsContext(o.bitmap, &o.graphics) != Gdiplus::Ok) return nullptr;
    gp::GdipSetCompositingMode(o.graphics, Gdiplus::CompositingModeSourceCopy);
    gp::GdipSetCompositingQuality(o.graphics, Gdiplus::CompositingQualityHighSpeed);
    gp::GdipSetPixelOffsetMode(o.graphics, Gdiplus::PixelOffsetModeHalf);
    gp::GdipSetInterpolationMode(o.graphics, Gdiplus::InterpolationModeNearestNeighbor);
    gp::GdipDrawImageRectI(o.graphics, o.bitmap, 0, 0, tray_badge::icon_size, tray_badge::icon_size);

    // The badge and its outline are opaque, so blending over gives what a copy gives; Wine's fill of
    // an ellipse in copy mode clears the pixels instead of painting them.
    gp::GdipSetCompositingMode(o.graphics, Gdiplus::CompositingModeSourceOver);
    const tray_badge::ellipse e = tray_badge::badge_ellipse;
    if (gp::GdipCreateSolidFill(colour, &o.brush) != Gdiplus::Ok) return nullptr;
    gp::GdipFillEllipse(o.graphics, o.brush, e.x, e.y, e.width, e.height);
    if (gp::GdipCreatePen1(tray_badge::badge_outline(dark), 1.0f, Gdiplus::UnitWorld, &o.pen) != Gdiplus::Ok) {
        return nullptr;
    }
    gp::GdipDrawEllipse(o.graphics, o.pen, e.x, e.y, e.width, e.height);

    HICON icon = nullptr;
    if (gp::GdipCreateHICONFromBitmap(o.bitmap, &icon) != Gdiplus::Ok) return nullptr;
    return icon;
}

}  // namespace

HICON load_logo_icon(HINSTANCE module) {
    return static_cast<HICON>(
        LoadImageW(module, MAKEINTRESOURCEW(LOGO_RESOURCE), IMAGE_ICON, tray_badge::icon_size, tray_badge::icon_size, 0));
}

HICON render_badge_icon(bool with_badge, uint32_t colour, bool dark, HINSTANCE module) {
    unique_hicon logo(load_logo_icon(module));
    if (!logo || !with_badge) return logo.release();
    return render_badge_icon(logo.get(), colour, dark);
}

HICON render_badge_icon(HICON logo, uint32_t colour, bool dark) {
    if (!logo) return nullptr;
    try {
        return badge_icon(logo, colour, dark);
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "Exception in create_system_tray_icon_with_optional_overlay: {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "Unknown exception in create_system_tray_icon_with_optional_overlay");
    }
    return nullptr;
}

HBITMAP render_status_dot(uint32_t colour, uint32_t ring) {
    const int size = GetSystemMetrics(SM_CXSMICON);
    if (size <= 10) return nullptr;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = size;
    info.bmiHeader.biHeight = -size;  // top-down
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const HBITMAP section = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!section || !bits) {
        if (section) DeleteObject(section);
        return nullptr;
    }
    std::memset(bits, 0, static_cast<size_t>(size) * size * 4);
    {
        gdiplus_objects o;
        // GDI+ draws straight into the section's pixels.
        if (gp::GdipCreateBitmapFromScan0(size, size, size * 4, PixelFormat32bppPARGB, static_cast<BYTE*>(bits),
                                          &o.bitmap) != Gdiplus::Ok) {
            DeleteObject(section);
            return nullptr;
        }
        if (gp::GdipGetImageGraphicsContext(o.bitmap, &o.graphics) == Gdiplus::Ok) {
            gp::GdipSetSmoothingMode(o.graphics, Gdiplus::SmoothingModeAntiAlias);
            const tray_badge::ellipse e = tray_badge::dot_ellipse(size);
            if (gp::GdipCreateSolidFill(colour, &o.brush) == Gdiplus::Ok) {
                gp::GdipFillEllipse(o.graphics, o.brush, e.x, e.y, e.width, e.height);
            }
            if (gp::GdipCreatePen1(ring, 1.0f, Gdiplus::UnitWorld, &o.pen) == Gdiplus::Ok) {
                gp::GdipDrawEllipse(o.graphics, o.pen, e.x, e.y, e.width, e.height);
            }
        }
    }
    GdiFlush();
    return section;
}

void tray_window::update_tray_icon() {
    if (shutting_down) return;
    const std::optional<uint32_t> badge = tray_badge::badge_colour(index.indexing_status, updates.update_status);
    if (badge) gdiplus.start();  // the plain logo needs no GDI+
    // Kept between refreshes: under Wine a new icon from the resource costs more than all the drawing.
    // Without a badge the logo itself becomes the new icon, and the next refresh loads another.
    if (!logo_icon) logo_icon.reset(load_logo_icon());
    unique_hicon icon(badge ? render_badge_icon(logo_icon.get(), *badge, dark_mode) : logo_icon.release());
    if (!icon) {
        logging::log(log_severity::error, "Failed to create system tray icon: new_icon_handle is nullptr");
        return;
    }
    NOTIFYICONDATAW data{};
    data.cbSize = NOTIFY_DATA_SIZE;
    data.hWnd = hwnd();
    data.uID = TRAY_ICON_MAIN;
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    data.uCallbackMessage = WM_TRAY_NOTIFY;
    data.hIcon = icon.get();
    wcscpy_s(data.szTip, L"Veldrake");
    // Modify first: the same call then serves the first start, every refresh and a taskbar rebuilt
    // after Explorer restarted, where the old icon is gone and only the add succeeds.
    if (!Shell_NotifyIconW(NIM_MODIFY, &data)) Shell_NotifyIconW(NIM_ADD, &data);
    // The new icon is in; only now does the old one go.
    main_icon = std::move(icon);
}

void tray_window::remove_tray_icon() {
    NOTIFYICONDATAW data{};
    data.cbSize = NOTIFY_DATA_SIZE;
    data.hWnd = hwnd();
    data.uID = TRAY_ICON_MAIN;
    Shell_NotifyIconW(NIM_DELETE, &data);
}
