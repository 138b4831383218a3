#include <windows.h>

#include <process.h>

#include "index_watch/index_sampler_win32.h"

#include "logging/log.h"
#include "platform/com_ptr_win32.h"
#include "platform/search_api_win32.h"
#include "platform/thread_stack_win32.h"
#include "tray_messages.h"

#include <cerrno>
#include <exception>
#include <system_error>

namespace index_watch {

namespace {

// Whether COM can know the class at all. Without a registration CoCreateInstance answers
// REGDB_E_CLASSNOTREG, but only after a round through the RPC service for a local server, which under
// Wine (which has no Windows Search) costs more than all the rest of a sample. Asked at every call.
bool class_registered(const CLSID& id) {
    wchar_t key[64] = L"CLSID\\";
    if (StringFromGUID2(id, key + 6, 39) == 0) return true;
    HKEY opened = nullptr;
    const LSTATUS status = RegOpenKeyExW(HKEY_CLASSES_ROOT, key, 0, KEY_QUERY_VALUE, &opened);
    if (status == ERROR_SUCCESS) RegCloseKey(opened);
    // Only a key that is not there settles it; any other failure leaves the answer to COM.
    return status != ERROR_FILE_NOT_FOUND;
}

// One count from a catalog made for this call alone; both objects are released before it returns.
// `read` fills the count and returns the catalog call's result.
template <class Read>
int32_t read_catalog_count(const char* function, const char* call, Read read) {
    try {
        com_ptr<ISearchManager> manager;
        HRESULT result = class_registered(CLSID_CSearchManager)
                             ? CoCreateInstance(CLSID_CSearchManager, nullptr, CLSCTX_ALL, __uuidof(ISearchManager),
                                                manager.put_void())
                             : REGDB_E_CLASSNOTREG;
        // Without the search service this fails: a normal outcome, logged all the same.
        if (FAILED(result) || !manager) {
            logging::log(log_severity::error, "{}: Failed to create ISearchManager. HRESULT={}", function, result);
            return -1;
        }
        com_ptr<ISearchCatalogManager> catalog;
        result = manager->GetCatalog(L"SystemIndex", catalog.put());
        if (FAILED(result) || !catalog) {
            logging::log(log_severity::error, "{}: Failed to get SystemIndex catalog. HRESULT={}", function, result);
            return -1;
        }
        int32_t count = 0;
        result = read(*catalog.get(), count);
        if (FAILED(result)) {
            logging::log(log_severity::error, "{}: {} failed. HRESULT={}", function, call, result);
            return -1;
        }
        return count;
    } catch (const std::exception& e) {
        logging::log(log_severity::error, "{}: Exception: {}", function, e.what());
    } catch (...) {
        logging::log(log_severity::error, "{}: Unknown exception", function);
    }
    return -1;
}

unsigned __stdcall index_sample_thread(void* window) {
    try {
        const com_scope com(COINIT_MULTITHREADED | COINIT_DISABLE_OLE1DDE);
        const int32_t items_to_index = get_items_to_index_count();
        const int32_t total_items = get_total_items_in_index_count();
        // The handler reads the low 32 bits of each as signed values.
        PostMessageW(static_cast<HWND>(window), WM_INDEX_COUNTS, static_cast<uint32_t>(items_to_index),
                     static_cast<uint32_t>(total_items));
    } catch (...) {
        // Only the log itself can throw here; nothing is left to tell.
    }
    release_unused_stack_pages();
    return 0;
}

}  // namespace

int32_t get_items_to_index_count() {
    return read_catalog_count("get_items_to_index_count", "NumberOfItemsToIndex",
                              [](ISearchCatalogManager& catalog, int32_t& count) {
                                  LONG incremental = 0, notifications = 0, high_priority = 0;
                                  const HRESULT result =
                                      catalog.NumberOfItemsToIndex(&incremental, &notifications, &high_priority);
                                  // The sum wraps in 32 bits as the counts do.
                                  count = static_cast<int32_t>(static_cast<uint32_t>(incremental) +
                                                               static_cast<uint32_t>(notifications) +
                                                               static_cast<uint32_t>(high_priority));
                                  return result;
                              });
}

int32_t get_total_items_in_index_count() {
    return read_catalog_count("get_total_items_in_index_count", "NumberOfItems",
                              [](ISearchCatalogManager& catalog, int32_t& count) {
                                  LONG items = 0;
                                  const HRESULT result = catalog.NumberOfItems(&items);
                                  count = items;
                                  return result;
                              });
}

void start_index_sample_thread(HWND window) { start_detached_thread(index_sample_thread, window); }

void start_detached_thread(unsigned(__stdcall* entry)(void*), void* parameter) {
    const uintptr_t thread = _beginthreadex(nullptr, 0, entry, parameter, 0, nullptr);
    if (thread == 0) throw std::system_error(errno, std::generic_category(), "_beginthreadex");
    CloseHandle(reinterpret_cast<HANDLE>(thread));
}

}  // namespace index_watch
