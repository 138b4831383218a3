#pragma once

#include <string>
#include <vector>

// The batch helper's command line for adding folders to the search index:
// --add-index-scope ["--subject:<subject>"] "<path>"...
// Trailing backslashes are removed, so that a drive root cannot escape its closing quote.
std::wstring add_to_index_arguments(const std::vector<std::wstring>& paths, const std::wstring& subject);
