#include "common/wine_process_win32.h"
#include "dialogs/download_progress_dialog_win32.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace common_dialogs;
using test_support::poll_until;

namespace {

// The dialog on a worker thread with its own message loop, as the update download runs it.
class download_dialog_thread {
public:
    download_dialog_thread() {
        thread_ = std::thread([this] {
            const HWND window = dialog.open(L"Downloading Veldrake");
            window_ = window;
            if (!window) return;
            MSG message;
            while (!dialog.done && GetMessageW(&message, nullptr, 0, 0) > 0) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
            DestroyWindow(window);
        });
        poll_until([&] { return window_.load() != nullptr; });
    }
    ~download_dialog_thread() {
        if (window_) PostMessageW(window_, WM_DOWNLOAD_DONE, 0, 0);
        thread_.join();
    }
    HWND window() const { return window_; }
    HWND progress() const { return FindWindowExW(window_, nullptr, PROGRESS_CLASSW, nullptr); }
    HWND cancel() const { return GetDlgItem(window_, ID_DOWNLOAD_CANCEL); }
    int position() const { return static_cast<int>(SendMessageW(progress(), PBM_GETPOS, 0, 0)); }

    download_progress_dialog dialog;

private:
    std::thread thread_;
    std::atomic<HWND> window_{nullptr};
};

}  // namespace

TEST(download_progress_dialog, a_captioned_window_without_system_menu_with_bar_and_cancel) {
    download_dialog_thread d;
    ASSERT_NE(d.window(), nullptr);
    wchar_t name[64] = {};
    GetClassNameW(d.window(), name, 64);
    EXPECT_STREQ(name, L"KTN_SimpleProgressDialogWnd");
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(d.window(), GWL_STYLE));
    EXPECT_EQ(style & (WS_CAPTION | WS_VISIBLE), static_cast<DWORD>(WS_CAPTION | WS_VISIBLE));
    EXPECT_EQ(style & WS_SYSMENU, 0u) << "no other way to close it";
    ASSERT_NE(d.progress(), nullptr);
    ASSERT_NE(d.cancel(), nullptr);
    EXPECT_EQ(SendMessageW(d.progress(), PBM_GETRANGE, FALSE, 0), 100);
    RECT bar{}, cancel{}, client{};
    GetWindowRect(d.progress(), &bar);
    GetWindowRect(d.cancel(), &cancel);
    EXPECT_EQ(bar.right, cancel.right) << "both end 20 pixels from the right";
    EXPECT_GT(cancel.top, bar.bottom);
    GetClientRect(d.window(), &client);
    EXPECT_EQ(bar.right - bar.left, client.right - 40);

    IBindStatusCallback* callback = nullptr;
    ASSERT_EQ(d.dialog.QueryInterface(IID_IBindStatusCallback, reinterpret_cast<void**>(&callback)), S_OK);
    EXPECT_EQ(callback, static_cast<IBindStatusCallback*>(&d.dialog));
    void* other = reinterpret_cast<void*>(1);
    EXPECT_EQ(d.dialog.QueryInterface(IID_IClassFactory, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
}

TEST(download_progress_dialog, bar_follows_posted_percents_from_the_download_thread) {
    download_dialog_thread d;
    ASSERT_NE(d.window(), nullptr);
    std::thread download([&] {
        EXPECT_EQ(d.dialog.OnProgress(0, 0, 0, nullptr), S_OK) << "unknown length";
        EXPECT_EQ(d.dialog.OnProgress(250, 1000, 0, nullptr), S_OK);
    });
    download.join();
    EXPECT_TRUE(poll_until([&] { return d.position() == 25; }));
    d.dialog.OnProgress(999, 1000, 0, nullptr);
    EXPECT_TRUE(poll_until([&] { return d.position() == 99; }));
    EXPECT_EQ(d.dialog.last_percent, 99);
}

TEST(download_progress_dialog, cancel_sets_the_flag_disables_the_button_and_aborts_the_download) {
    download_dialog_thread d;
    ASSERT_NE(d.window(), nullptr);
    EXPECT_EQ(d.dialog.OnProgress(0, 0, 0, nullptr), S_OK);
    EXPECT_TRUE(IsWindowEnabled(d.cancel()));
    PostMessageW(d.cancel(), BM_CLICK, 0, 0);
    EXPECT_TRUE(poll_until([&] { return d.dialog.cancelled.load(); }));
    EXPECT_TRUE(poll_until([&] { return !IsWindowEnabled(d.cancel()); })) << "a second click is impossible";
    EXPECT_EQ(d.dialog.OnProgress(0, 0, 0, nullptr), E_ABORT);
    EXPECT_EQ(d.dialog.OnProgress(500, 1000, 0, nullptr), E_ABORT);
    EXPECT_TRUE(IsWindow(d.window())) << "the window stays until the download has stopped";
}
