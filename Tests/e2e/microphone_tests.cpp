#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "microphone/microphone_state.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace e2e;

// Under Wine with a null source of PulseAudio there is a default microphone, but its mute lives in
// one IAudioEndpointVolume object: each fresh read finds it on, so every toggle mutes and the next state
// request (which the test asks for as the platform's notification would) finds it on again.
namespace {

class microphone_tray : public tray_test {
protected:
    void TearDown() override {
        tray.reset();
        switch_sound_server(false);
        std::filesystem::remove(settings_file());
        tray_test::TearDown();
    }

    // The trays that start next find the test run's sound server, or none: scripts/wine_desktop points
    // PULSE_SERVER at a link to its server's socket, which is there only while a test wants it.
    static bool switch_sound_server(bool on) {
        return desktop::run_unix(on ? "ln -sfn $VELDRAKE_PULSE_SOCKET ${PULSE_SERVER#unix:}"
                                    : "rm -f ${PULSE_SERVER#unix:}") == 0;
    }
    void start(bool sound_server) {
        ASSERT_TRUE(GetEnvironmentVariableW(L"VELDRAKE_PULSE_SOCKET", nullptr, 0) && switch_sound_server(sound_server))
            << "scripts/wine_desktop starts PulseAudio, which scripts/bootstrap installs";
        tray.emplace();
    }

    static void write_settings(bool when_muted, bool when_on) {
        std::filesystem::create_directories(settings_file().parent_path());
        std::ofstream(settings_file(), std::ios::trunc)
            << R"({"apps":[{"app_id":"media-keys","status":"enabled","settings":{"general":{)"
            << R"("showMicrophoneMuteTrayIcon":)" << (when_muted ? "true" : "false")
            << R"(,"showMicrophoneOnTrayIcon":)" << (when_on ? "true" : "false") << "}}}]}";
    }

    void toggle() const { PostMessageW(tray->window(), WM_TRAY_NOTIFY, TRAY_ICON_MICROPHONE, WM_LBUTTONUP); }
    // What the monitor posts when the endpoint reports a change.
    void endpoint_changed() const { PostMessageW(tray->window(), WM_MIC_ENDPOINT_CHANGED, 0, 0); }
    bool icon_becomes(bool present) const {
        return poll_until([&] { return icon_shown(tray->window(), TRAY_ICON_MICROPHONE) == present; });
    }

    std::optional<running_tray> tray;
};

// The slot left of the main icon, where the microphone's icon goes.
RECT microphone_slot() {
    const std::optional<RECT> main_icon = desktop::find_tray_icon();
    if (!main_icon) return {};
    return {main_icon->left - 22, main_icon->top - 2, main_icon->left - 2, main_icon->bottom + 2};
}

}  // namespace

// The icon shows the microphone on in the light theme's colour; a click mutes it and redraws it in the
// muted colour. (Each state's colour in each theme is the Win32 tier's, which reads the icon's own
// pixels: Wine's taskbar stays white in either theme, so the white glyph of dark mode could not be told
// from it here anyway.) Then the settings decide. Only while muted: the icon goes while the microphone is
// on, comes with the mute and goes when it is on again. Only while on brings it at the next tick (what a
// click does then is the core's table). Both false remove it and stop the monitor; one back on starts it
// again. After Explorer restarted, the icon comes back through the add road. A tray without a sound server
// finds no microphone: no icon, and a click logs that there is none.
TEST_F(microphone_tray, shows_the_state_a_click_mutes_the_settings_decide_and_a_new_taskbar_gets_it_again) {
    start(true);
    ASSERT_TRUE(icon_becomes(true));
    // The glyph in the state's colour, scaled down by the shell from the full height of the icon.
    const auto shows = [&](bool muted) {
        const uint32_t rgb = microphone::icon_colour(muted, false) & 0xFFFFFF;
        std::optional<RECT> glyph;
        return poll_until([&] { return (glyph = desktop::find_colour(microphone_slot(), rgb, 24)).has_value(); }) &&
               glyph->bottom - glyph->top >= 10;
    };
    ASSERT_TRUE(shows(false)) << "the glyph in the colour of a microphone that is on";
    const log_mark log(tray_log_file());
    ASSERT_TRUE(desktop::click(desktop::centre(microphone_slot()), 1));
    EXPECT_TRUE(poll_until([&] { return log.count("[INFO] Microphone: set mute state to true") > 0; }));
    EXPECT_TRUE(shows(true)) << "the glyph in the muted colour";

    write_settings(true, false);
    endpoint_changed();
    EXPECT_TRUE(icon_becomes(false)) << "only while muted: on again";
    toggle();
    EXPECT_TRUE(icon_becomes(true)) << "muted";
    endpoint_changed();
    EXPECT_TRUE(icon_becomes(false)) << "on again";
    write_settings(false, true);
    EXPECT_TRUE(icon_becomes(true)) << "only while on: at the next tick";
    write_settings(false, false);
    EXPECT_TRUE(icon_becomes(false)) << "both off";
    write_settings(false, true);
    EXPECT_TRUE(icon_becomes(true)) << "the monitor starts again and its request brings the icon";
    // A staged Explorer restart: the icon is gone, and the result after "TaskbarCreated" adds it again.
    ASSERT_TRUE(restart_explorer(tray->window(), TRAY_ICON_MICROPHONE));
    EXPECT_TRUE(icon_becomes(true));

    tray.reset();
    start(false);
    toggle();
    EXPECT_TRUE(poll_until([&] { return log.count("[INFO] Microphone: no default microphone to mute/unmute") > 0; }));
    EXPECT_FALSE(icon_shown(tray->window(), TRAY_ICON_MICROPHONE));
}
