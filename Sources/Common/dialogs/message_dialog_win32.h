#pragma once

#include <windows.h>

#include "dialogs/windows11_button_win32.h"
#include "platform/unique_resource_win32.h"

#include <string>

namespace common_dialogs {

// Identifiers of the dialog's controls; show() returns the one that ended it.
constexpr int ID_MESSAGE_OK = IDOK;          // 1
constexpr int ID_MESSAGE_CANCEL = IDCANCEL;  // 2
constexpr int ID_MESSAGE_COPY = 1001;
constexpr int ID_MESSAGE_NO = 1002;
constexpr int ID_MESSAGE_CHECK = 1003;

// The tray's own modal message box: follows the theme, scales with the display, scrolls a long text
// in a read-only edit and copies its text with Ctrl+C or the copy button. A value on the caller's
// stack: construct, adjust the fields, show once.
class message_dialog {
public:
    message_dialog(std::wstring text, bool show_cancel, std::wstring check_text = L"Do this for &all current items");
    message_dialog(const message_dialog&) = delete;
    message_dialog& operator=(const message_dialog&) = delete;
    ~message_dialog() = default;

    // Runs the dialog modally on the calling thread: 1, 2 or 1002, or -1 when it could not be made.
    int show(HWND parent);

    unique_hgdiobj background_brush;
    std::wstring text;
    std::wstring check_text;
    std::wstring ok_text = L"OK";
    std::wstring cancel_text = L"Cancel";
    std::wstring no_text = L"No";
    std::wstring title;
    bool show_cancel = false;
    bool show_no = false;
    bool show_copy = true;
    bool show_check = false;
    bool check_result = false;  // the check box, read when OK or Cancel ends the dialog
    bool bring_to_front = false;
    unique_hgdiobj font;
    HICON big_icon = nullptr, small_icon = nullptr;  // not owned
    HWND static_window = nullptr, edit_window = nullptr;
    windows11_button ok_button, cancel_button, no_button, copy_button;
    HWND check_window = nullptr;
    theme_colours::scheme scheme;  // read when the dialog is made
    uint32_t dpi = 96;

private:
    static INT_PTR CALLBACK dialog_proc(HWND dialog, UINT message, WPARAM w, LPARAM l) noexcept;
    static LRESULT CALLBACK message_filter(int code, WPARAM w, LPARAM l) noexcept;
    INT_PTR process_message(UINT message, WPARAM w, LPARAM l);
    void on_init_dialog();
    void on_bring_to_front();
    HWND make_child(const wchar_t* window_class, const std::wstring& caption, DWORD style, int id, const RECT& r);

    HWND dialog_ = nullptr;
    HWND parent_ = nullptr;
};

// A message with OK only, the OK button in the accent colour.
int show_info_message(const std::wstring& text, HWND parent);

// Puts `text` on the clipboard as Unicode text. An empty text leaves the clipboard alone.
bool copy_text_to_clipboard(const std::wstring& text);

}  // namespace common_dialogs
