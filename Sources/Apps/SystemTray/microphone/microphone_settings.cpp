#include "microphone/microphone_settings.h"

#include "settings/high_level_settings.h"

namespace microphone {

namespace {
constexpr char APP_ID[] = "media-keys";
}  // namespace

show_settings read_show_settings(const high_level_settings::settings_file& settings) {
    if (!settings.is_app_enabled(APP_ID, true)) return {false, false};
    return {settings.get_bool(APP_ID, "general.showMicrophoneMuteTrayIcon"),
            settings.get_bool(APP_ID, "general.showMicrophoneOnTrayIcon")};
}

}  // namespace microphone
