#pragma once

#include "presentation/tray_menu_layout.h"

namespace high_level_settings {
class settings_file;
}

// The menu font's settings: the suite's context-menu appearance ("context-menu-replacement"), with
// the defaults for what is absent or of another type.
tray_menu_layout::font_settings read_menu_font_settings(const high_level_settings::settings_file& settings);
