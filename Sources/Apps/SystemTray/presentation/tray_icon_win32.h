#pragma once

#include <windows.h>

#include <cstdint>

// The two small renderers of the tray's pictures. Colours are ARGB.

// The logo (icon resource 101 of `module`, 32 by 32) with a badge of `colour` in its lower left
// corner, or as it is without a badge. A new icon that the caller owns, or null.
HICON render_badge_icon(bool with_badge, uint32_t colour, bool dark, HINSTANCE module = GetModuleHandleW(nullptr));
// The badge drawn on a logo loaded already, which stays the caller's: a new icon, or null.
HICON render_badge_icon(HICON logo, uint32_t colour, bool dark);
// Icon resource 101 of `module`, 32 by 32: a new icon that the caller owns, or null.
HICON load_logo_icon(HINSTANCE module = GetModuleHandleW(nullptr));

// A dot of `colour` ringed in `ring` (both ARGB) on a transparent small-icon square: a top-down 32-bit
// premultiplied section that the caller owns, or null.
HBITMAP render_status_dot(uint32_t colour, uint32_t ring);
