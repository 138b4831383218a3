#include <windows.h>

#include <exdisp.h>
#include <shlguid.h>
#include <shlobj.h>

#include "explorer/explorer_start_monitor_win32.h"

#include "explorer/explorer_window_win32.h"
#include "explorer/navigation_display.h"
#include "explorer/registry_port_win32.h"
#include "explorer/start_location.h"
#include "logging/log.h"
#include "platform/com_ptr_win32.h"
#include "platform/thread_stack_win32.h"
#include "settings/high_level_settings.h"
#include "tray_timings.h"

#include <memory>

namespace {

// The platform's event callback takes no user data: the monitor of this thread, while it runs.
thread_local explorer_start_monitor* current_monitor = nullptr;

void log_line(log_severity level, const std::wstring& line) { logging::log(level, L"{}", line); }

std::optional<uint32_t> window_owner(explorer::window_id window) {
    const HWND handle = reinterpret_cast<HWND>(window);
    DWORD process_id = 0;
    if (!IsWindow(handle) || GetWindowThreadProcessId(handle, &process_id) == 0) return std::nullopt;
    return process_id;
}

bool owned_by_explorer(DWORD process_id) {
    const unique_handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process_id));
    if (!process) return false;
    wchar_t image[MAX_PATH] = {};
    DWORD length = MAX_PATH;
    return QueryFullProcessImageNameW(process.get(), 0, image, &length) &&
           explorer::is_explorer_image(std::wstring_view(image, length));
}

class variant_index {
public:
    explicit variant_index(LONG index) noexcept {
        VariantInit(&value_);
        value_.vt = VT_I4;
        value_.lVal = index;
    }
    ~variant_index() { VariantClear(&value_); }
    VARIANT& get() noexcept { return value_; }

private:
    VARIANT value_;
};

}  // namespace

void explorer_start_monitor::start() {
    if (thread_.joinable()) return;
    stop_event_.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!stop_event_) return;
    thread_ = std::thread([this] { run(); });
}

void explorer_start_monitor::stop() noexcept {
    if (stop_event_) SetEvent(stop_event_.get());
    if (thread_.joinable()) thread_.join();
    stop_event_.reset();
}

void explorer_start_monitor::run() noexcept {
    try {
        const com_scope com(COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
        if (FAILED(com.result())) return;
        current_monitor = this;
        explorer::platform_registry registry;
        explorer::adopt_starting_location_flag(registry, log_line);
        release_unused_stack_pages();
        const HWINEVENTHOOK hook = SetWinEventHook(EVENT_OBJECT_CREATE, EVENT_OBJECT_DESTROY, nullptr,
                                                   on_explorer_window_event, 0, 0,
                                                   WINEVENT_OUTOFCONTEXT | WINEVENT_SKIPOWNPROCESS);
        if (!hook) {
            logging::log(log_severity::warning, "[navigation-start] Could not watch new Explorer windows: {}",
                         GetLastError());
        } else {
            for (;;) {
                const HANDLE stop = stop_event_.get();
                const DWORD wait = pending_explorer_windows.empty() ? INFINITE : explorer::PENDING_PASS_MS;
                if (MsgWaitForMultipleObjects(1, &stop, FALSE, wait, QS_ALLINPUT) == WAIT_OBJECT_0) break;
                MSG message;
                while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                    TranslateMessage(&message);
                    DispatchMessageW(&message);
                }
                service_pending_windows();
            }
            UnhookWinEvent(hook);
        }
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "explorer_start_monitor failed: {}", e.what());
    } catch (...) {
        logging::log(log_severity::error, "explorer_start_monitor failed with unknown exception");
    }
    current_monitor = nullptr;
}

void CALLBACK explorer_start_monitor::on_explorer_window_event(HWINEVENTHOOK, DWORD event, HWND window, LONG object,
                                                              LONG child, DWORD, DWORD) noexcept {
    explorer_start_monitor* monitor = current_monitor;
    if (!monitor || !window || object != OBJID_WINDOW || child != CHILDID_SELF) return;
    const auto id = reinterpret_cast<explorer::window_id>(window);
    try {
        if (event == EVENT_OBJECT_DESTROY) {
            monitor->pending_explorer_windows.erase(id);
            return;
        }
        if (event != EVENT_OBJECT_CREATE) return;
        // The class test comes first: the hook sees every window creation on the desktop.
        wchar_t class_name[64] = {};
        if (GetClassNameW(window, class_name, 64) == 0 || !explorer::is_explorer_window_class(class_name)) return;
        DWORD process_id = 0;
        if (GetWindowThreadProcessId(window, &process_id) == 0 || !owned_by_explorer(process_id)) return;
        explorer::note_window_created(monitor->pending_explorer_windows, id, process_id, GetTickCount64());
    } catch (...) {
        // A window missed for want of memory is only not redirected.
    }
}

void explorer_start_monitor::service_pending_windows() {
    explorer::prune_pending_windows(pending_explorer_windows, GetTickCount64(), TRAY_TIMINGS.explorer_give_up_ms,
                                    window_owner, log_line);
    if (pending_explorer_windows.empty()) return;
    explorer::platform_registry registry;
    explorer::pass_settings settings;
    settings.start_enabled = explorer::start_location_enabled(registry);
    try {
        // Local to the pass: it shares nothing with the window thread's settings.
        high_level_settings::settings_file file;
        explorer::read_navigation_display_settings(file, settings.search_filters_mode, settings.quick_pins_mode);
    } catch (...) {
        // A settings folder that cannot be made leaves both modes at one level expanded.
    }
    com_ptr<IShellWindows> windows;
    long count = 0;
    if (FAILED(CoCreateInstance(CLSID_ShellWindows, nullptr, CLSCTX_ALL, IID_IShellWindows, windows.put_void())) ||
        !windows || FAILED(windows->get_Count(&count))) {
        return;
    }
    for (long index = 0; index < count; ++index) {
        variant_index at(index);
        com_ptr<IDispatch> item;
        if (FAILED(windows->Item(at.get(), item.put())) || !item) continue;
        const auto browser = item.try_query<IWebBrowser2>();
        SHANDLE_PTR handle = 0;
        if (!browser || FAILED(browser->get_HWND(&handle))) continue;
        const auto id = static_cast<explorer::window_id>(handle);
        const auto found = pending_explorer_windows.find(id);
        if (found == pending_explorer_windows.end()) continue;
        std::unique_ptr<explorer::window_tree> tree;
        const auto flags = explorer::service_window(
            found->second, settings,
            [&] {
                explorer::window_browser start(browser);
                return explorer::navigate_new_window_if_at_default(start, registry, log_line);
            },
            [&]() -> explorer::navigation_tree* {
                auto control = explorer::get_namespace_tree_control(*browser.get());
                if (!control) return nullptr;
                tree = std::make_unique<explorer::window_tree>(std::move(control));
                return tree.get();
            },
            log_line);
        tree.reset();
        // The calls above pump messages: the destroy event may have removed the window meanwhile.
        explorer::store_window_flags(pending_explorer_windows, id, flags);
    }
}
