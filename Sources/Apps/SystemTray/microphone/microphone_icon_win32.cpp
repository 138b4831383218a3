#include "microphone/microphone_icon_win32.h"

#include <gdiplus.h>

namespace gp = Gdiplus::DllExports;

namespace microphone {

namespace {

// Owners for the flat GDI+ objects, deleted in the reverse order of their creation.
struct gdiplus_objects {
    Gdiplus::GpBitmap* bitmap = nullptr;
    Gdiplus::GpGraphics* graphics = nullptr;
    Gdiplus::GpFontFamily* family = nullptr;
    Gdiplus::GpStringFormat* format = nullptr;
    Gdiplus::GpPath* path = nullptr;
    Gdiplus::GpMatrix* matrix = nullptr;
    Gdiplus::GpSolidFill* brush = nullptr;
    Gdiplus::GpPen* pen = nullptr;
    ~gdiplus_objects() {
        if (pen) gp::GdipDeletePen(pen);
        if (brush) gp::GdipDeleteBrush(brush);
        if (matrix) gp::GdipDeleteMatrix(matrix);
        if (path) gp::GdipDeletePath(path);
        if (format) gp::GdipDeleteStringFormat(format);
        if (family) gp::GdipDeleteFontFamily(family);
        if (graphics) gp::GdipDeleteGraphics(graphics);
        if (bitmap) gp::GdipDisposeImage(bitmap);
    }
};

int32_t point_count(Gdiplus::GpPath* path) {
    INT count = 0;
    gp::GdipGetPointCount(path, &count);
    return count;
}

bool add_glyph(gdiplus_objects& o, char32_t glyph, float size) {
    const wchar_t text[2] = {static_cast<wchar_t>(glyph), 0};
    const Gdiplus::RectF layout(0, 0, size, size);
    return gp::GdipAddPathString(o.path, text, 1, o.family, Gdiplus::FontStyleRegular, size, &layout, o.format) ==
               Gdiplus::Ok &&
           point_count(o.path) > 0;
}

// Where neither icon font exists: a capsule on a cradle and stand, struck through when muted. The
// strokes are widened into outlines so that the one fill draws them all.
void add_drawn_microphone(Gdiplus::GpPath* path, bool muted) {
    gp::GdipAddPathEllipse(path, 9, 2, 6, 6);
    gp::GdipAddPathRectangle(path, 9, 5, 6, 7);
    gp::GdipAddPathEllipse(path, 9, 9, 6, 6);
    Gdiplus::GpPath* strokes = nullptr;
    Gdiplus::GpPen* pen = nullptr;
    if (gp::GdipCreatePath(Gdiplus::FillModeWinding, &strokes) != Gdiplus::Ok) return;
    if (gp::GdipCreatePen1(0xFF000000, 2.0f, Gdiplus::UnitWorld, &pen) == Gdiplus::Ok) {
        gp::GdipAddPathArc(strokes, 6, 5, 12, 12, 0, 180);
        gp::GdipStartPathFigure(strokes);
        gp::GdipAddPathLine(strokes, 12, 18, 12, 20);
        gp::GdipStartPathFigure(strokes);
        gp::GdipAddPathLine(strokes, 8, 21, 16, 21);
        if (muted) {
            gp::GdipStartPathFigure(strokes);
            gp::GdipAddPathLine(strokes, 4, 2, 20, 22);
        }
        if (gp::GdipWidenPath(strokes, pen, nullptr, 0.25f) == Gdiplus::Ok) gp::GdipAddPathPath(path, strokes, FALSE);
        gp::GdipDeletePen(pen);
    }
    gp::GdipDeletePath(strokes);
}

HICON render(std::initializer_list<const wchar_t*> families, char32_t glyph, bool muted, uint32_t colour,
             int32_t size) {
    const auto side = static_cast<float>(size);
    gdiplus_objects o;
    if (gp::GdipCreateBitmapFromScan0(size, size, 0, PixelFormat32bppARGB, nullptr, &o.bitmap) != Gdiplus::Ok) {
        return nullptr;
    }
    if (gp::GdipGetImageGraphicsContext(o.bitmap, &o.graphics) != Gdiplus::Ok) return nullptr;
    gp::GdipSetSmoothingMode(o.graphics, Gdiplus::SmoothingModeAntiAlias);
    gp::GdipGraphicsClear(o.graphics, 0x00000000);
    // Creating the family is the test that the font exists.
    for (const wchar_t* name : families) {
        if (gp::GdipCreateFontFamilyFromName(name, nullptr, &o.family) == Gdiplus::Ok) break;
        o.family = nullptr;
    }
    // Wine's GdipAddPathString fails without a real format.
    gp::GdipCreateStringFormat(0, LANG_NEUTRAL, &o.format);
    gp::GdipSetStringFormatAlign(o.format, Gdiplus::StringAlignmentCenter);
    gp::GdipSetStringFormatLineAlign(o.format, Gdiplus::StringAlignmentCenter);
    if (gp::GdipCreatePath(Gdiplus::FillModeWinding, &o.path) != Gdiplus::Ok) return nullptr;
    bool drawn = o.family && add_glyph(o, glyph, side);
    if (o.family && !drawn) {
        // The first attempt can come back empty while the font is still being loaded.
        gp::GdipResetPath(o.path);
        drawn = add_glyph(o, glyph, side);
    }
    if (!drawn) {
        gp::GdipResetPath(o.path);
        // A reset path fills alternately; the drawn figures overlap and must add up.
        gp::GdipSetPathFillMode(o.path, Gdiplus::FillModeWinding);
        add_drawn_microphone(o.path, muted);
    }

    // The outline fills the icon, whatever the font's metrics.
    Gdiplus::RectF bounds;
    gp::GdipGetPathWorldBounds(o.path, &bounds, nullptr, nullptr);
    if (const std::optional<fit> f = fit_outline(side, bounds.X, bounds.Y, bounds.Width, bounds.Height)) {
        if (gp::GdipCreateMatrix2(f->scale, 0, 0, f->scale, f->dx, f->dy, &o.matrix) == Gdiplus::Ok) {
            gp::GdipTransformPath(o.path, o.matrix);
        }
    }
    if (gp::GdipCreateSolidFill(colour, &o.brush) != Gdiplus::Ok) return nullptr;
    if (gp::GdipCreatePen1(colour, side * 0.01f, Gdiplus::UnitWorld, &o.pen) != Gdiplus::Ok) return nullptr;
    gp::GdipSetPenLineJoin(o.pen, Gdiplus::LineJoinRound);
    // The thin outline thickens the glyph by a hair, so that it reads at small sizes.
    gp::GdipDrawPath(o.graphics, o.pen, o.path);
    gp::GdipFillPath(o.graphics, o.brush, o.path);
    HICON icon = nullptr;
    if (gp::GdipCreateHICONFromBitmap(o.bitmap, &icon) != Gdiplus::Ok) return nullptr;
    return icon;
}

}  // namespace

HICON render_glyph_icon(std::initializer_list<const wchar_t*> families, char32_t glyph, bool muted, uint32_t colour,
                        int32_t size) {
    try {
        return render(families, glyph, muted, colour, size);
    } catch (...) {
        // Only an allocation can throw here; a missing icon is the renderer's failure result.
        return nullptr;
    }
}

HICON render_microphone_icon(bool muted, bool dark) {
    return render_glyph_icon({L"Segoe Fluent Icons", L"Segoe MDL2 Assets"}, glyph(muted), muted,
                             icon_colour(muted, dark), icon_size(GetSystemMetrics(SM_CXSMICON)));
}

}  // namespace microphone
