#include "updates/version_check.h"

#include <cstdint>
#include <cstdlib>
#include <string>

// Any text the server may send: parsing must not crash, a success must print back to numbers that
// parse the same, and a failure must leave zeros.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    updates::version_numbers out{};
    if (!updates::parse_version(text, out)) {
        if (out != updates::version_numbers{}) std::abort();
        return 0;
    }
    const std::string again = std::to_string(out[0]) + "." + std::to_string(out[1]) + "." + std::to_string(out[2]) +
                              "." + std::to_string(out[3]);
    updates::version_numbers reparsed{};
    if (!updates::parse_version(again, reparsed) || reparsed != out) std::abort();
    for (const int32_t n : out) {
        if (n < 0) std::abort();
    }
    return 0;
}
