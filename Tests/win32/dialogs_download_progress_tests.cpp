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
struct download_dialog_thread {
    download_dialog_thread() {
        poll_until([&] { return window.load() != nullptr; });
    }
    ~download_dialog_thread() {
        if (window) PostMessageW(window, WM_DOWNLOAD_DONE, 0, 0);
        thread.join();
    }
    int position() const { return static_cast<int>(SendMessageW(dialog.progress_window, PBM_GETPOS, 0, 0)); }

    download_progress_dialog dialog;
    std::atomic<HWND> window{nullptr};
    std::thread thread{[this] {
        const HWND opened = dialog.open(L"Downloading Veldrake");
        window = opened;
        MSG message;
        while (opened && !dialog.done && GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
        DestroyWindow(opened);
    }};
};

}  // namespace

// The bar follows a percent posted from a thread that is not the dialog's, as the download's is not
// (which percents are posted, the host tests pin). Cancel, and WM_CLOSE (Alt+F4, or another program
// ending this one politely), then set the flag, disable the button and abort the download.
TEST(download_progress_dialog, bar_follows_posted_percents_and_cancel_or_close_abort_the_download) {
    for (const bool close : {false, true}) {
        SCOPED_TRACE(close ? "WM_CLOSE" : "Cancel");
        download_dialog_thread d;
        ASSERT_NE(d.window.load(), nullptr);
        EXPECT_EQ(GetWindowLongPtrW(d.window, GWL_STYLE) & WS_SYSMENU, 0) << "Cancel is the only way out";
        EXPECT_EQ(d.dialog.OnProgress(250, 1000, 0, nullptr), S_OK);
        EXPECT_TRUE(poll_until([&] { return d.position() == 25; }));
        const HWND cancel = GetDlgItem(d.window, ID_DOWNLOAD_CANCEL);
        EXPECT_TRUE(IsWindowEnabled(cancel));
        PostMessageW(close ? d.window.load() : cancel, close ? WM_CLOSE : BM_CLICK, 0, 0);
        EXPECT_TRUE(poll_until([&] { return d.dialog.cancelled.load(); }));
        EXPECT_TRUE(poll_until([&] { return !IsWindowEnabled(cancel); })) << "a second click is impossible";
        EXPECT_EQ(d.dialog.OnProgress(500, 1000, 0, nullptr), E_ABORT);
        EXPECT_TRUE(IsWindow(d.window)) << "the window stays until the download has stopped";
    }
}
