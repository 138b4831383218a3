#include "index_watch/add_to_index.h"

std::wstring add_to_index_arguments(const std::vector<std::wstring>& paths, const std::wstring& subject) {
    std::wstring arguments = L"--add-index-scope";
    if (!subject.empty()) arguments += L" \"--subject:" + subject + L"\"";
    for (std::wstring path : paths) {
        while (!path.empty() && path.back() == L'\\') path.pop_back();
        arguments += L" \"" + path + L"\"";
    }
    return arguments;
}
