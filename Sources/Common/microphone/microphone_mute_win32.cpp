#include "microphone/microphone_mute_win32.h"

#include "logging/log.h"
#include "microphone/microphone_mute.h"
#include "platform/com_object_win32.h"

namespace microphone_mute {

namespace {

com_ptr<IMMDeviceEnumerator> create_enumerator() {
    com_ptr<IMMDeviceEnumerator> enumerator;
    if (FAILED(CoCreateInstance(sdk::CLSID_MMDeviceEnumerator, nullptr, CLSCTX_ALL, __uuidof(IMMDeviceEnumerator),
                                enumerator.put_void()))) {
        enumerator.reset();
    }
    return enumerator;
}

HRESULT activate_endpoint_volume(IMMDeviceEnumerator* enumerator, ERole role, com_ptr<IAudioEndpointVolume>& volume,
                                 bool& found) {
    found = false;
    com_ptr<IMMDevice> device;
    HRESULT hr = enumerator->GetDefaultAudioEndpoint(eCapture, role, device.put());
    if (FAILED(hr)) return hr;
    found = true;
    return device->Activate(__uuidof(IAudioEndpointVolume), CLSCTX_ALL, nullptr, volume.put_void());
}

// The CoInitialize level of one call, undone at its end.
struct com_level {
    HRESULT result = CoInitialize(nullptr);
    ~com_level() {
        if (SUCCEEDED(result)) CoUninitialize();
    }
};

}  // namespace

// Core Audio calls both callbacks on threads of its own: they post and touch nothing else.
class mute_monitor::endpoint_volume_callback final : public com_object<IAudioEndpointVolumeCallback> {
public:
    endpoint_volume_callback(HWND window, UINT message) : window(window), message(message) {}
    HRESULT STDMETHODCALLTYPE OnNotify(PAUDIO_VOLUME_NOTIFICATION_DATA) override {
        if (window) PostMessageW(window, message, endpoint_volume_changed, 0);
        return S_OK;
    }

private:
    const HWND window;
    const UINT message;
};

class mute_monitor::device_notification_callback final : public com_object<IMMNotificationClient> {
public:
    device_notification_callback(HWND window, UINT message) : window(window), message(message) {}
    HRESULT STDMETHODCALLTYPE OnDeviceStateChanged(LPCWSTR, DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnDeviceAdded(LPCWSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnDeviceRemoved(LPCWSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnDefaultDeviceChanged(EDataFlow flow, ERole role, LPCWSTR) override {
        if (window && default_change_concerns_microphone(static_cast<uint32_t>(flow), static_cast<uint32_t>(role))) {
            PostMessageW(window, message, default_endpoint_changed, 0);
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnPropertyValueChanged(LPCWSTR, const PROPERTYKEY) override { return S_OK; }

private:
    const HWND window;
    const UINT message;
};

bool default_microphone_is_muted(bool& muted) {
    muted = false;
    const com_level com;
    const com_ptr<IMMDeviceEnumerator> enumerator = create_enumerator();
    if (!enumerator) return false;
    com_ptr<IAudioEndpointVolume> volume;
    bool found = false;
    if (FAILED(activate_endpoint_volume(enumerator.get(), eConsole, volume, found))) return false;
    BOOL value = FALSE;
    if (FAILED(volume->GetMute(&value))) return false;
    muted = value != FALSE;
    return true;
}

HRESULT set_endpoint_mute(IMMDeviceEnumerator* enumerator, ERole role, bool muted) {
    com_ptr<IAudioEndpointVolume> volume;
    bool found = false;
    const HRESULT hr = activate_endpoint_volume(enumerator, role, volume, found);
    if (FAILED(hr)) return hr;
    return volume->SetMute(muted ? TRUE : FALSE, nullptr);
}

void post_default_microphone_state(HWND window, UINT state_message, uint64_t generation) {
    bool muted = false;
    const bool read = default_microphone_is_muted(muted);
    PostMessageW(window, state_message, state_request_flags(read, muted), static_cast<LPARAM>(generation));
}

void toggle_default_microphone_mute(HWND window, UINT state_message, uint64_t generation) {
    bool muted = false;
    const bool now_muted = toggled_state(default_microphone_is_muted(muted), muted);
    {
        const com_level com;
        com_ptr<IMMDeviceEnumerator> enumerator = create_enumerator();
        if (!enumerator) {
            logging::log(log_severity::error, "Microphone: unable to create the media device enumerator");
            return;
        }
        const HRESULT console = set_endpoint_mute(enumerator.get(), eConsole, now_muted);
        // The communications role follows; its result is deliberately not looked at.
        set_endpoint_mute(enumerator.get(), eCommunications, now_muted);
        if (FAILED(console)) {
            logging::log(log_severity::info, "Microphone: no default microphone to mute/unmute");
            return;
        }
        logging::log(log_severity::info, "Microphone: set mute state to {}", now_muted);
    }
    static const UINT show_media_osd = RegisterWindowMessageW(L"Veldrake.ShowMediaOsd");
    PostMessageW(HWND_BROADCAST, show_media_osd, osd_code(now_muted), 0);
    // The tray shows the new state at once, without waiting for the endpoint's own notification.
    PostMessageW(window, state_message, toggle_result_flags(now_muted), static_cast<LPARAM>(generation));
}

bool mute_monitor::start(HWND target) {
    const std::lock_guard guard(lock);
    if (started_) return true;
    window = target;
    message = endpoint_changed_message;
    enumerator = create_enumerator();
    if (!enumerator) {
        logging::log(log_severity::error, "Microphone monitor: unable to create the media device enumerator");
        return false;
    }
    *device_callback.put() = new device_notification_callback(window, message);
    // Without device notifications the watch still serves the endpoint of today.
    enumerator->RegisterEndpointNotificationCallback(device_callback.get());
    *volume_callback.put() = new endpoint_volume_callback(window, message);
    attach();
    started_ = true;
    return true;
}

bool mute_monitor::attach() {
    const std::lock_guard guard(lock);
    if (endpoint_volume) {
        endpoint_volume->UnregisterControlChangeNotify(volume_callback.get());
        endpoint_volume.reset();
    }
    com_ptr<IAudioEndpointVolume> volume;
    bool found = false;
    const HRESULT hr = activate_endpoint_volume(enumerator.get(), eConsole, volume, found);
    // No microphone is an ordinary state: nothing is watched until one comes.
    if (!found) return false;
    if (FAILED(hr)) {
        logging::log(log_severity::error, "Microphone monitor: Activate(IAudioEndpointVolume) failed (hr=0x{:08x})",
                     static_cast<uint32_t>(hr));
        return true;
    }
    if (FAILED(volume->RegisterControlChangeNotify(volume_callback.get()))) {
        logging::log(log_severity::error, "Microphone monitor: RegisterControlChangeNotify failed");
        return true;
    }
    endpoint_volume = std::move(volume);
    return true;
}

bool mute_monitor::reattach() {
    const std::lock_guard guard(lock);
    return !started_ || attach();
}

void mute_monitor::stop() {
    const std::lock_guard guard(lock);
    if (endpoint_volume) {
        endpoint_volume->UnregisterControlChangeNotify(volume_callback.get());
        endpoint_volume.reset();
    }
    if (enumerator && device_callback) enumerator->UnregisterEndpointNotificationCallback(device_callback.get());
    volume_callback.reset();
    device_callback.reset();
    enumerator.reset();
    started_ = false;
}

bool mute_monitor::started() {
    const std::lock_guard guard(lock);
    return started_;
}

bool mute_monitor::watching() {
    const std::lock_guard guard(lock);
    return static_cast<bool>(endpoint_volume);
}

}  // namespace microphone_mute
