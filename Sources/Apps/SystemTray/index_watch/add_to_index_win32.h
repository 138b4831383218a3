#pragma once

#include <string>
#include <vector>

// Starts the suite's batch helper, hidden, to add `paths` to the search index. Nothing for an empty
// list; a failed start is logged. Throws when the shell cannot be asked at all.
void launch_add_to_index_helper(const std::vector<std::wstring>& paths, const std::wstring& subject);
