#pragma once

#include <windows.h>

#include "logging/log.h"

#include <exception>

// A window class in the manner of CWindowImpl, without virtual functions. Derived supplies
//   static window_class_info class_info();
//   LRESULT process_message(UINT message, WPARAM w, LPARAM l, bool& handled);
// The static procedure stores `this` at WM_NCCREATE and forwards every later message to Derived.
struct window_class_info {
    const wchar_t* name;
    UINT style;
    LPCWSTR cursor;  // a system cursor id such as IDC_ARROW, or null
    int background;  // a system colour index plus one, or 0 for none
};

template <class Derived>
class window_impl {
public:
    window_impl() = default;
    window_impl(const window_impl&) = delete;
    window_impl& operator=(const window_impl&) = delete;

    HWND hwnd() const noexcept { return hwnd_; }

    // Registers the class on first use and creates the window; WM_CREATE runs inside this call.
    HWND create(const wchar_t* title, DWORD style, DWORD ex_style = 0, HWND parent = nullptr) {
        const HINSTANCE instance = GetModuleHandleW(nullptr);
        const window_class_info info = Derived::class_info();
        WNDCLASSEXW existing{};
        existing.cbSize = sizeof(existing);
        if (!GetClassInfoExW(instance, info.name, &existing)) {
            WNDCLASSEXW wc{};
            wc.cbSize = sizeof(wc);
            wc.style = info.style;
            wc.lpfnWndProc = &window_impl::window_proc;
            wc.hInstance = instance;
            wc.hCursor = info.cursor ? LoadCursorW(nullptr, info.cursor) : nullptr;
            wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(info.background));
            wc.lpszClassName = info.name;
            if (!RegisterClassExW(&wc)) return nullptr;
        }
        return CreateWindowExW(ex_style, info.name, title, style, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                               CW_USEDEFAULT, parent, nullptr, instance, static_cast<Derived*>(this));
    }

protected:
    ~window_impl() = default;

    LRESULT default_proc(UINT message, WPARAM w, LPARAM l) noexcept { return DefWindowProcW(hwnd_, message, w, l); }

private:
    static LRESULT CALLBACK window_proc(HWND hwnd, UINT message, WPARAM w, LPARAM l) noexcept {
        auto* self = reinterpret_cast<Derived*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
        if (message == WM_NCCREATE) {
            self = static_cast<Derived*>(reinterpret_cast<CREATESTRUCTW*>(l)->lpCreateParams);
            self->hwnd_ = hwnd;
            SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        }
        if (!self) return DefWindowProcW(hwnd, message, w, l);

        LRESULT result = 0;
        bool handled = true;
        try {
            result = self->process_message(message, w, l, handled);
        } catch (const std::exception& e) {
            // Handlers catch what they expect; anything else (a thread that could not start) ends
            // the process here rather than unwinding through user32.
            logging::log(log_severity::critical, "Unhandled exception in message 0x{:X}: {}", message, e.what());
            std::terminate();
        }
        if (!handled) result = DefWindowProcW(hwnd, message, w, l);

        if (message == WM_NCDESTROY) {
            SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
            self->hwnd_ = nullptr;
        }
        return result;
    }

    HWND hwnd_ = nullptr;
};
