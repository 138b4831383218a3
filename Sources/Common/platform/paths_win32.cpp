#include <windows.h>

#include <knownfolders.h>
#include <shlobj.h>
#include <shlwapi.h>

#include "platform/paths_win32.h"

#include <system_error>

std::filesystem::path module_file_name(HMODULE module) {
    std::wstring buffer(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(module, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == buffer.size() && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        buffer.assign(65535, L'\0');
        length = GetModuleFileNameW(module, buffer.data(), static_cast<DWORD>(buffer.size()));
    }
    buffer.resize(length);
    return buffer;
}

std::filesystem::path module_folder() {
    std::wstring path = module_file_name().wstring();
    path.push_back(L'\0');
    PathRemoveFileSpecW(path.data());
    path.resize(wcslen(path.c_str()));
    return path;
}

std::filesystem::path local_app_data_folder() {
    PWSTR local = nullptr;
    const HRESULT hr = SHGetKnownFolderPath(FOLDERID_LocalAppData, KF_FLAG_CREATE, nullptr, &local);
    if (FAILED(hr)) {
        CoTaskMemFree(local);
        throw std::filesystem::filesystem_error("LocalAppData is not available",
                                                std::error_code(hr, std::system_category()));
    }
    std::filesystem::path folder(local);
    CoTaskMemFree(local);
    return folder;
}

std::filesystem::path app_data_folder(const std::wstring& a, const std::wstring& b) {
    const auto folder = local_app_data_folder() / L"Kestrane" / L"Veldrake" / a / b;
    std::filesystem::create_directories(folder);
    return folder;
}
