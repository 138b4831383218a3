#pragma once

#include <filesystem>

// Deletes all but the two newest hang dumps in `folder`; other files are never touched.
void prune_hang_dumps(const std::filesystem::path& folder);

// Writes a minidump of this process into `folder`, from the calling thread, so that the window thread
// is caught where it hangs. Every failure is a WARNING line and no dump.
void write_hang_dump(const std::filesystem::path& folder);
