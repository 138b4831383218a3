#include "tray_menu_win32.h"

tray_menu_layout::font_settings read_menu_font_settings() { return {}; }
