#include <windows.h>

#include "installer_gate.h"
#include "installer_gate_win32.h"
#include "platform/unique_resource_win32.h"

namespace {

constexpr wchar_t gate_key[] = L"SOFTWARE\\Kestrane\\Veldrake\\InstallerMaintenance";

template <class T>
std::optional<T> read_gate_value(const wchar_t* name, DWORD type_flag) {
    T value{};
    DWORD size = sizeof(value);
    if (RegGetValueW(HKEY_LOCAL_MACHINE, gate_key, name, type_flag | RRF_SUBKEY_WOW6464KEY, nullptr, &value, &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

bool installer_maintenance_running() {
    const auto recorded_process = read_gate_value<DWORD>(L"Process", RRF_RT_REG_DWORD);
    const auto recorded_creation = read_gate_value<ULONGLONG>(L"Created", RRF_RT_REG_QWORD);
    const auto pid = installer_gate::process_to_inspect(recorded_process, recorded_creation);
    if (!pid) return false;

    unique_handle process(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, *pid));
    if (!process) return installer_gate::running_when_open_failed(GetLastError());

    FILETIME created{}, exited{}, kernel{}, user{};
    std::optional<uint64_t> creation_time;
    if (GetProcessTimes(process.get(), &created, &exited, &kernel, &user)) {
        creation_time = (static_cast<uint64_t>(created.dwHighDateTime) << 32) | created.dwLowDateTime;
    }
    const bool alive = WaitForSingleObject(process.get(), 0) == WAIT_TIMEOUT;
    return installer_gate::running(creation_time, *recorded_creation, alive);
}
