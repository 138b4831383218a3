#pragma once

#include <windows.h>
#include <urlmon.h>

#include "dialogs/windows11_button_win32.h"
#include "platform/unique_resource_win32.h"
#include "platform/window_impl_win32.h"

#include <atomic>
#include <string>

namespace common_dialogs {

constexpr UINT WM_DOWNLOAD_PERCENT = WM_APP + 1;  // wParam: the percent
constexpr UINT WM_DOWNLOAD_DONE = WM_APP + 2;     // the download thread has ended
constexpr int ID_DOWNLOAD_CANCEL = IDCANCEL;

// A small window with a progress bar and a Cancel button, which is at once the status callback of the
// download: URLDownloadToFileW reports to it and is stopped through it. It lives on the stack of the
// thread that creates it and runs its message loop; the download reports from another thread.
class download_progress_dialog : public window_impl<download_progress_dialog>, public IBindStatusCallback {
public:
    download_progress_dialog() = default;

    static window_class_info class_info() noexcept;
    LRESULT process_message(UINT message, WPARAM w, LPARAM l, bool& handled);

    // Creates the visible window with `caption`; null if it could not be made.
    HWND open(const std::wstring& caption);

    // IUnknown. The object lives on its thread's stack, so nothing is counted.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    // IBindStatusCallback: only the progress matters.
    HRESULT STDMETHODCALLTYPE OnStartBinding(DWORD, IBinding*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetPriority(LONG*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnLowResource(DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnProgress(ULONG progress, ULONG maximum, ULONG status, LPCWSTR text) override;
    HRESULT STDMETHODCALLTYPE OnStopBinding(HRESULT, LPCWSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetBindInfo(DWORD*, BINDINFO*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnDataAvailable(DWORD, DWORD, FORMATETC*, STGMEDIUM*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnObjectAvailable(REFIID, IUnknown*) override { return S_OK; }

    HWND progress_window = nullptr;
    windows11_button cancel_button;
    unique_hgdiobj background_brush;
    std::atomic<bool> cancelled{false};
    theme_colours::scheme scheme;  // read when the window is made
    bool done = false;  // set by WM_DOWNLOAD_DONE; the owner's message loop ends on it
    int32_t last_percent = -1;

private:
    LRESULT on_create();
    void cancel();

    unique_hgdiobj font_;
};

}  // namespace common_dialogs
