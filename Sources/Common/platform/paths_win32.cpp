#include <windows.h>

#include <knownfolders.h>
#include <shlobj.h>
#include <shlwapi.h>

#include "platform/paths_win32.h"

#include <system_error>

std::filesystem::path module_folder() {
    std::wstring buffer(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == buffer.size() || GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        buffer.assign(65535, L'\0');
        length = GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    }
    buffer.resize(length);
    buffer.push_back(L'\0');
    PathRemoveFileSpecW(buffer.data());
    buffer.resize(wcslen(buffer.c_str()));
    return buffer;
}

std::filesystem::path app_data_folder(const std::wstring& a, const std::wstring& b) {
    PWSTR local = nullptr;
    const HRESULT hr = SHGetKnownFolderPath(FOLDERID_LocalAppData, KF_FLAG_CREATE, nullptr, &local);
    if (FAILED(hr)) {
        CoTaskMemFree(local);
        throw std::filesystem::filesystem_error("LocalAppData is not available",
                                                std::error_code(hr, std::system_category()));
    }
    std::filesystem::path folder(local);
    CoTaskMemFree(local);
    folder = folder / L"Kestrane" / L"Veldrake" / a / b;
    std::filesystem::create_directories(folder);
    return folder;
}
