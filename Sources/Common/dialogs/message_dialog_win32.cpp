#include "dialogs/message_dialog_win32.h"

#include "dialogs/message_dialog_layout.h"
#include "dialogs/theme_helpers_win32.h"
#include "logging/log.h"
#include "platform/scope_exit.h"

#include <algorithm>
#include <cstring>

namespace common_dialogs {

namespace {

namespace layout = message_dialog_layout;
using ui_metrics::scale;

constexpr UINT WM_BRING_TO_FRONT = WM_APP + 1;
constexpr wchar_t DIALOG_PROPERTY[] = L"Veldrake.MessageDialog";
constexpr DWORD STATIC_STYLE = 0x50022080;  // WS_CHILD | WS_VISIBLE | WS_GROUP | SS_EDITCONTROL | SS_NOPREFIX
constexpr DWORD EDIT_STYLE = 0x50A10844;    // ... WS_VSCROLL | WS_BORDER | WS_TABSTOP | ES_READONLY | ES_AUTOVSCROLL | ES_MULTILINE
constexpr DWORD CHECK_STYLE = 0x50010003;   // WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX
constexpr DWORD BUTTON_STYLE = 0x50010000;  // WS_CHILD | WS_VISIBLE | WS_TABSTOP
constexpr DWORD DEFAULT_BUTTON_STYLE = BUTTON_STYLE | BS_DEFPUSHBUTTON;

// One template for every dialog: a captioned modal popup with no controls, 400 by 200 units; the real
// sizes are set when it opens. The values never change, so dialogs on two threads may share it.
const DLGTEMPLATE* dialog_template() noexcept {
    struct alignas(4) blank_template {
        DLGTEMPLATE header;
        WORD menu, window_class, caption;
    };
    static blank_template t;
    t.header = {0x80C80880, 0, 0, 0, 0, 400, 200};  // WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_CENTER
    t.menu = t.window_class = t.caption = 0;
    return &t.header;
}

SIZE measure(HDC dc, const std::wstring& text, UINT flags, int width = 0) {
    RECT r{0, 0, width, 0};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &r, flags);
    return {r.right - r.left, r.bottom - r.top};
}

RECT to_rect(const ui_metrics::rect& r) { return {r.left, r.top, r.right, r.bottom}; }

// Centres `window` on `parent`, or on its monitor's work area without one.
void centre(HWND window, HWND parent) {
    RECT own{};
    GetWindowRect(window, &own);
    RECT area{};
    if (parent && IsWindowVisible(parent) && !IsIconic(parent)) {
        GetWindowRect(parent, &area);
    } else {
        MONITORINFO info{};
        info.cbSize = sizeof(info);
        GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &info);
        area = info.rcWork;
    }
    const int width = own.right - own.left, height = own.bottom - own.top;
    const int x = area.left + ((area.right - area.left) - width) / 2;
    const int y = area.top + ((area.bottom - area.top) - height) / 2;
    SetWindowPos(window, nullptr, std::max<int>(x, area.left), std::max<int>(y, area.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

message_dialog::message_dialog(std::wstring text_, bool show_cancel_, std::wstring check_text_)
    : text(std::move(text_)), check_text(std::move(check_text_)), show_cancel(show_cancel_) {}

int message_dialog::show(HWND parent) {
    parent_ = parent;
    // Keys go to the focused control, never to the dialog: this filter of the dialog's own modal loop
    // lets Ctrl+C reach it wherever the focus is.
    const HHOOK filter = SetWindowsHookExW(WH_MSGFILTER, &message_dialog::message_filter, nullptr, GetCurrentThreadId());
    const scope_exit unhook([&] {
        if (filter) UnhookWindowsHookEx(filter);
    });
    return static_cast<int>(DialogBoxIndirectParamW(GetModuleHandleW(nullptr), dialog_template(), parent,
                                                    &message_dialog::dialog_proc, reinterpret_cast<LPARAM>(this)));
}

LRESULT CALLBACK message_dialog::message_filter(int code, WPARAM w, LPARAM l) noexcept {
    const auto* msg = reinterpret_cast<const MSG*>(l);
    if (code == MSGF_DIALOGBOX && msg && msg->message == WM_KEYDOWN && msg->wParam == 'C' &&
        GetKeyState(VK_CONTROL) < 0) {
        const HWND root = GetAncestor(msg->hwnd, GA_ROOT);
        if (root && GetPropW(root, DIALOG_PROPERTY)) {
            SendMessageW(root, WM_KEYDOWN, msg->wParam, msg->lParam);
            return TRUE;
        }
    }
    return CallNextHookEx(nullptr, code, w, l);
}

INT_PTR CALLBACK message_dialog::dialog_proc(HWND dialog, UINT message, WPARAM w, LPARAM l) noexcept {
    message_dialog* self = nullptr;
    if (message == WM_INITDIALOG) {
        self = reinterpret_cast<message_dialog*>(l);
        self->dialog_ = dialog;
        SetWindowLongPtrW(dialog, DWLP_USER, l);
        SetPropW(dialog, DIALOG_PROPERTY, reinterpret_cast<HANDLE>(1));
    } else {
        self = reinterpret_cast<message_dialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
    }
    if (!self) return FALSE;
    try {
        return self->process_message(message, w, l);
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "[dialogs] Exception in message_dialog: {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "[dialogs] Unknown exception in message_dialog");
    }
    return FALSE;
}

INT_PTR message_dialog::process_message(UINT message, WPARAM w, LPARAM) {
    switch (message) {
        case WM_INITDIALOG:
            on_init_dialog();
            return FALSE;  // the focus is set on OK already
        case WM_COMMAND:
            switch (LOWORD(w)) {
                case ID_MESSAGE_OK:
                case ID_MESSAGE_CANCEL:
                    check_result = check_window && SendMessageW(check_window, BM_GETCHECK, 0, 0) == BST_CHECKED;
                    EndDialog(dialog_, LOWORD(w));
                    return TRUE;
                case ID_MESSAGE_NO:
                    EndDialog(dialog_, ID_MESSAGE_NO);
                    return TRUE;
                case ID_MESSAGE_COPY:
                    copy_text_to_clipboard(text);
                    return TRUE;
                default:
                    return FALSE;
            }
        case WM_KEYDOWN:
            if (w == 'C' && GetKeyState(VK_CONTROL) < 0) {
                copy_text_to_clipboard(text);
                return TRUE;
            }
            return FALSE;
        case WM_CTLCOLORDLG:
            return reinterpret_cast<INT_PTR>(background_brush.get());
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLOREDIT: {
            const HDC dc = reinterpret_cast<HDC>(w);
            const theme_colours::roles colours = theme_colours::for_surface(theme_colours::surface::dialog, scheme, 0);
            SetTextColor(dc, colours.text);
            SetBkMode(dc, TRANSPARENT);
            SetBkColor(dc, colours.background);
            return reinterpret_cast<INT_PTR>(background_brush.get());
        }
        case WM_BRING_TO_FRONT:
            on_bring_to_front();
            return TRUE;
        case WM_DESTROY:
            RemovePropW(dialog_, DIALOG_PROPERTY);
            return FALSE;
        default:
            return FALSE;
    }
}

HWND message_dialog::make_child(const wchar_t* window_class, const std::wstring& caption, DWORD style, int id,
                                const RECT& r) {
    const HWND child = CreateWindowExW(0, window_class, caption.c_str(), style, r.left, r.top, r.right - r.left,
                                       r.bottom - r.top, dialog_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                       GetModuleHandleW(nullptr), nullptr);
    if (child) SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
    return child;
}

void message_dialog::on_init_dialog() {
    scheme = read_scheme();
    const bool dark = dark_frame(scheme);
    apply_frame_attributes(dialog_, dark);
    background_brush.reset(CreateSolidBrush(theme_colours::for_surface(theme_colours::surface::dialog, scheme, 0).background));
    const UINT window_dpi = GetDpiForWindow(dialog_);
    dpi = window_dpi ? window_dpi : 96;
    font.reset(create_ui_font(dialog_));
    SendMessageW(dialog_, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);

    layout::measured m;
    m.dpi = dpi;
    m.show_cancel = show_cancel;
    m.show_no = show_no;
    m.show_copy = show_copy;
    m.show_check = show_check;
    m.edge_height = GetSystemMetrics(SM_CYEDGE);
    if (const HDC dc = GetDC(dialog_)) {
        const HGDIOBJ old_font = SelectObject(dc, font.get());
        m.text_height = measure(dc, text, DT_WORDBREAK | DT_CALCRECT | DT_NOPREFIX | DT_EDITCONTROL,
                                layout::text_width(dpi)).cy;
        TEXTMETRICW metrics{};
        if (GetTextMetricsW(dc, &metrics)) m.line_height = metrics.tmHeight + metrics.tmExternalLeading;
        m.check_text_width = measure(dc, check_text, DT_SINGLELINE | DT_CALCRECT | DT_NOPREFIX).cx;
        m.ok_text_width = measure(dc, ok_text, DT_SINGLELINE | DT_CALCRECT).cx;
        m.cancel_text_width = measure(dc, cancel_text, DT_SINGLELINE | DT_CALCRECT).cx;
        m.no_text_width = measure(dc, no_text, DT_SINGLELINE | DT_CALCRECT).cx;
        SelectObject(dc, old_font);
        ReleaseDC(dialog_, dc);
    }
    const layout::size s = layout::size_for(m);

    RECT frame{0, 0, s.client_width, s.client_height};
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrW(dialog_, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(dialog_, GWL_EXSTYLE)));
    SetWindowPos(dialog_, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top, SWP_NOMOVE | SWP_NOZORDER);
    RECT client{};
    GetClientRect(dialog_, &client);
    const layout::children c = layout::place(m, s, client.right - client.left, client.bottom - client.top);

    if (s.scrolling) {
        edit_window = make_child(L"EDIT", layout::to_crlf(text), EDIT_STYLE, -1, to_rect(c.text));
        apply_dark_theme(edit_window, dark);
    } else {
        static_window = make_child(L"STATIC", text, STATIC_STYLE, -1, to_rect(c.text));
    }
    check_window = make_child(L"BUTTON", check_text, CHECK_STYLE, ID_MESSAGE_CHECK, to_rect(c.check));

    if (show_copy) {
        const HWND copy = make_child(L"BUTTON", L"", BUTTON_STYLE, ID_MESSAGE_COPY, to_rect(c.copy));
        copy_button.glyph = L"\xE8C8";
        copy_button.attach(copy);
        SendMessageW(copy, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
    }
    const auto make_button = [&](windows11_button& button, const std::wstring& caption, DWORD style, int id,
                                 const ui_metrics::rect& r) {
        const HWND window = make_child(L"BUTTON", caption, style, id, to_rect(r));
        button.attach(window);
        SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
    };
    if (show_cancel) make_button(cancel_button, cancel_text, BUTTON_STYLE, ID_MESSAGE_CANCEL, c.cancel);
    if (show_no) make_button(no_button, no_text, BUTTON_STYLE, ID_MESSAGE_NO, c.no);
    make_button(ok_button, ok_text, DEFAULT_BUTTON_STYLE, ID_MESSAGE_OK, c.ok);

    for (const HWND child : {static_window, edit_window, check_window, copy_button.window(), cancel_button.window(),
                             no_button.window(), ok_button.window()}) {
        if (child) apply_dark_theme(child, dark);
    }

    apply_dark_theme(dialog_, dark);

    if (big_icon) SendMessageW(dialog_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(big_icon));
    if (small_icon) SendMessageW(dialog_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(small_icon));
    if (!title.empty()) SetWindowTextW(dialog_, title.c_str());
    centre(dialog_, parent_);
    if (ok_button.window()) SetFocus(ok_button.window());
    if (bring_to_front) PostMessageW(dialog_, WM_BRING_TO_FRONT, 0, 0);
}

void message_dialog::on_bring_to_front() {
    ShowWindow(dialog_, IsIconic(dialog_) ? SW_RESTORE : SW_SHOWNORMAL);
    // Windows gives the foreground only to the thread that has the input: join its input for a moment.
    const HWND foreground = GetForegroundWindow();
    const DWORD own_thread = GetCurrentThreadId();
    DWORD their_thread = 0;
    if (foreground && foreground != dialog_) their_thread = GetWindowThreadProcessId(foreground, nullptr);
    const bool attached =
        their_thread != 0 && their_thread != own_thread && AttachThreadInput(own_thread, their_thread, TRUE);
    BringWindowToTop(dialog_);
    SetForegroundWindow(dialog_);
    SetActiveWindow(dialog_);
    if (ok_button.window()) SetFocus(ok_button.window());
    if (attached) AttachThreadInput(own_thread, their_thread, FALSE);
    SetWindowPos(dialog_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_SHOWWINDOW);
    SetWindowPos(dialog_, HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_SHOWWINDOW);
}

int show_info_message(const std::wstring& text, HWND parent) {
    message_dialog dialog(text, false);
    dialog.show_copy = false;
    dialog.ok_button.primary = true;
    return dialog.show(parent);
}

namespace {

// Another program (a clipboard manager, or anyone reading it) may hold the clipboard for a moment:
// OpenClipboard then fails at once, and the user's copy would be lost without a word.
bool open_clipboard() {
    for (int attempt = 0; attempt < 10; ++attempt) {
        if (OpenClipboard(nullptr)) return true;
        Sleep(20);
    }
    return false;
}

}  // namespace

bool copy_text_to_clipboard(const std::wstring& text) {
    if (text.empty()) return false;
    if (!open_clipboard()) return false;
    const scope_exit close([] { CloseClipboard(); });
    EmptyClipboard();
    const size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (!memory) return false;
    void* locked = GlobalLock(memory);
    if (!locked) {
        GlobalFree(memory);
        return false;
    }
    std::memcpy(locked, text.c_str(), bytes);
    GlobalUnlock(memory);
    // The clipboard owns the memory once it takes it.
    if (!SetClipboardData(CF_UNICODETEXT, memory)) {
        GlobalFree(memory);
        return false;
    }
    return true;
}

}  // namespace common_dialogs
