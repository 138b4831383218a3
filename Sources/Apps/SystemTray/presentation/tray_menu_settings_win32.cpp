#include "logging/log.h"
#include "settings/high_level_settings.h"
#include "presentation/tray_menu_settings.h"
#include "presentation/tray_menu_win32.h"

#include <exception>
#include <memory>

tray_menu_layout::font_settings read_menu_font_settings() {
    // One settings file for the process, read again only when its time stamp moves.
    static std::unique_ptr<high_level_settings::settings_file> settings;
    try {
        if (!settings) settings = std::make_unique<high_level_settings::settings_file>();
        settings->reload_if_changed(false);
        return read_menu_font_settings(*settings);
    } catch (const std::exception& e) {
        logging::log(log_severity::warning, "Tray menu: settings not readable, default font: {}", e.what());
    }
    return {};
}
