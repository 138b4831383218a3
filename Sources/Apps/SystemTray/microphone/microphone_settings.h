#pragma once

namespace high_level_settings {
class settings_file;
}

namespace microphone {

struct show_settings {
    bool when_muted, when_on;
};

// The two settings of the media-keys app; both false while that app is disabled.
show_settings read_show_settings(const high_level_settings::settings_file& settings);

}  // namespace microphone
