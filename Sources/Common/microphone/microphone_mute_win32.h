#pragma once

#include <windows.h>

#include "platform/com_ptr_win32.h"
#include "platform/core_audio_win32.h"

#include <cstdint>
#include <mutex>

// The default microphone through Core Audio: its mute state read and set, and a monitor that posts
// a message to a window when that state or the default device changes.
namespace microphone_mute {

// The default capture endpoint (console role) is readable; `muted` is set to false before anything else.
bool default_microphone_is_muted(bool& muted);

// Sets the mute of the default capture endpoint of `role`: the HRESULT of the chain.
HRESULT set_endpoint_mute(IMMDeviceEnumerator* enumerator, ERole role, bool muted);

// The state task: reads the default microphone and posts `state_message` with the request's flags
// and `generation`. It does not log.
void post_default_microphone_state(HWND window, UINT state_message, uint64_t generation);

// The toggle task: sets the opposite of the state read on both roles, tells the suite's on-screen
// indicator, and posts the new state to `window` at once.
void toggle_default_microphone_mute(HWND window, UINT state_message, uint64_t generation);

class mute_monitor {
public:
    mute_monitor() = default;
    mute_monitor(const mute_monitor&) = delete;
    mute_monitor& operator=(const mute_monitor&) = delete;
    ~mute_monitor() { stop(); }

    // Starts watching for `window`; true when it runs (also when it ran already).
    bool start(HWND window);
    // Watches the endpoint that is now the default one. False only when the platform said that there is
    // no default microphone; true also when the monitor is not started and asked nothing.
    bool reattach();
    void stop();

    bool started();
    // An endpoint is under watch.
    bool watching();

    class endpoint_volume_callback;
    class device_notification_callback;

private:
    // False when there is no default capture endpoint.
    bool attach();

    // Taken on the window thread only; recursive, since start and reattach share attach.
    std::recursive_mutex lock;
    bool started_ = false;
    HWND window = nullptr;
    UINT message = 0;
    com_ptr<IMMDeviceEnumerator> enumerator;
    com_ptr<IAudioEndpointVolume> endpoint_volume;
    com_ptr<IAudioEndpointVolumeCallback> volume_callback;
    com_ptr<IMMNotificationClient> device_callback;
};

}  // namespace microphone_mute
