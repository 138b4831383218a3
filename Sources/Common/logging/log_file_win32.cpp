#include <windows.h>

#include "logging/log.h"
#include "logging/log_file_win32.h"
#include "platform/paths_win32.h"

std::filesystem::path log_folder(const std::wstring& subject) {
    std::filesystem::path folder = app_data_folder(subject, subject) / L"Logs";
    std::filesystem::create_directories(folder);
    return folder;
}

void start_process_log(const std::wstring& subject) {
    const auto folder = log_folder(subject);
    process_logger().open(folder / log_file_name(subject, to_local_time(std::chrono::system_clock::now())));
    logging::log(log_severity::info, L"Starting logging for {}", subject);
}
