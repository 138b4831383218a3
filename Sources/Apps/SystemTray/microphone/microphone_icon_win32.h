#pragma once

#include <windows.h>

#include "microphone/microphone_state.h"
#include "platform/unique_resource_win32.h"

#include <cstdint>
#include <initializer_list>

namespace microphone {

// The tray window's record of the microphone: the decisions' state and the icon now in the tray.
struct tray_state : state {
    unique_hicon mic_icon_handle;  // owned; stays after a removal until the next update or teardown
};

// The microphone icon of this state and theme, drawn from the icon font: a new icon that the caller
// owns, or null.
HICON render_microphone_icon(bool muted, bool dark);

// `glyph` as an outline that fills a square of `size` in `colour`, from the first of `families` that
// exists; a drawn microphone (struck through when `muted`) where none has the glyph.
HICON render_glyph_icon(std::initializer_list<const wchar_t*> families, char32_t glyph, bool muted, uint32_t colour,
                        int32_t size);

}  // namespace microphone
