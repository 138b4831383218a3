#include "presentation/tray_menu_settings.h"

#include "platform/string_conversion.h"
#include "settings/high_level_settings.h"

namespace {
constexpr char APP_ID[] = "context-menu-replacement";
}  // namespace

tray_menu_layout::font_settings read_menu_font_settings(const high_level_settings::settings_file& settings) {
    const tray_menu_layout::font_settings defaults;
    tray_menu_layout::font_settings font;
    font.size_dip = settings.get_int(APP_ID, "appearance.fontSizeDip", static_cast<int32_t>(defaults.size_dip));
    font.family = settings.get_string(APP_ID, "appearance.fontFamily", defaults.family);
    font.weight = to_utf8(settings.get_string(APP_ID, "appearance.fontWeight", to_wide(defaults.weight)));
    return font;
}
