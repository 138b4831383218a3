// scripts/bench's hands inside Wine, for the tray and its baseline alike:
//   bench_client start EXE CLASS ICON_ID   starts EXE, prints "start_ms" once its icon is in the tray
//   bench_client flood CLASS COUNT         sends COUNT WM_COPYDATA requests, prints "p50_us" and "p99_us"
//   bench_client close CLASS               posts WM_CLOSE and waits for the process to end
#include <windows.h>

#include <shellapi.h>

#include "toasts/tray_toast_ipc.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

namespace {

double now_ms() {
    static const double ticks_per_ms = [] {
        LARGE_INTEGER f;
        QueryPerformanceFrequency(&f);
        return static_cast<double>(f.QuadPart) / 1000.0;
    }();
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return static_cast<double>(t.QuadPart) / ticks_per_ms;
}

// A NIM_MODIFY that changes nothing succeeds only while the icon is there.
bool icon_present(HWND window, UINT id) {
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof(data);
    data.hWnd = window;
    data.uID = id;
    return Shell_NotifyIconW(NIM_MODIFY, &data) != FALSE;
}

int start(const wchar_t* exe, const wchar_t* window_class, UINT icon_id) {
    std::wstring command = L"\"" + std::wstring(exe) + L"\"";
    std::wstring folder(exe);
    folder.erase(folder.find_last_of(L"\\/") + 1);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    const double begin = now_ms();
    if (!CreateProcessW(exe, command.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &startup, &process)) {
        std::fprintf(stderr, "cannot start: error %lu\n", GetLastError());
        return 1;
    }
    CloseHandle(process.hThread);
    for (;;) {
        const HWND window = FindWindowW(window_class, nullptr);
        if (window && icon_present(window, icon_id)) break;
        if (WaitForSingleObject(process.hProcess, 1) == WAIT_OBJECT_0 || now_ms() - begin > 60000) {
            std::fprintf(stderr, "no icon\n");
            CloseHandle(process.hProcess);
            return 1;
        }
    }
    std::printf("start_ms %.1f\n", now_ms() - begin);
    CloseHandle(process.hProcess);
    return 0;
}

// The request the tray refuses at once (too short to be a toast): the cost is the message's road alone.
int flood(const wchar_t* window_class, int count) {
    const HWND window = FindWindowW(window_class, nullptr);
    if (!window) return 1;
    static const wchar_t payload[] = L"x";
    COPYDATASTRUCT copy{tray_toast_ipc::TOAST_COPYDATA_ID, 1, const_cast<wchar_t*>(payload)};
    std::vector<double> round_trips;
    round_trips.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        DWORD_PTR reply = 0;
        const double begin = now_ms();
        if (!SendMessageTimeoutW(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy), SMTO_BLOCK | SMTO_ABORTIFHUNG,
                                 5000, &reply)) {
            std::fprintf(stderr, "request %d unanswered\n", i);
            return 1;
        }
        round_trips.push_back((now_ms() - begin) * 1000.0);
    }
    std::sort(round_trips.begin(), round_trips.end());
    const auto at = [&](double share) { return round_trips[static_cast<size_t>(share * (round_trips.size() - 1))]; };
    std::printf("p50_us %.1f\np99_us %.1f\n", at(0.50), at(0.99));
    return 0;
}

int close(const wchar_t* window_class) {
    const HWND window = FindWindowW(window_class, nullptr);
    if (!window) return 0;
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const HANDLE process = OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE, FALSE, id);
    PostMessageW(window, WM_CLOSE, 0, 0);
    int code = 0;
    if (process && WaitForSingleObject(process, 15000) != WAIT_OBJECT_0) {
        std::fprintf(stderr, "did not end on WM_CLOSE\n");
        TerminateProcess(process, 1);
        code = 1;
    }
    if (process) CloseHandle(process);
    return code;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const std::wstring command = argc > 1 ? argv[1] : L"";
    if (command == L"start" && argc == 5) return start(argv[2], argv[3], static_cast<UINT>(std::wcstoul(argv[4], nullptr, 10)));
    if (command == L"flood" && argc == 4) return flood(argv[2], static_cast<int>(std::wcstol(argv[3], nullptr, 10)));
    if (command == L"close" && argc == 3) return close(argv[2]);
    std::fprintf(stderr, "usage: bench_client start EXE CLASS ICON_ID | flood CLASS COUNT | close CLASS\n");
    return 2;
}
