// Stands in for Windows Search's CSearchManager in tests: an in-process COM server whose SystemIndex
// catalog reports the counts that the test wrote to the registry (search_manager_double.h).
//
// Its tables are laid out by slot number from the public interface definitions, not from the tray's
// own declarations, so that a slot out of order there calls the wrong method here and fails the test.
// Every slot but the few the tray calls answers E_NOTIMPL: on x64 one calling convention serves any
// argument list.
#include <windows.h>

#include "doubles/search_manager/search_manager_double.h"

#include <array>
#include <atomic>

namespace {

constexpr CLSID CLSID_CSearchManager = {0x7D096C5F, 0xAC08, 0x4F1F, {0xBE, 0xB7, 0x5C, 0x22, 0xC5, 0x17, 0xCE, 0x39}};
// Slots after IUnknown's three.
constexpr size_t CREATE_INSTANCE = 3, GET_CATALOG = 3 + 7, NUMBER_OF_ITEMS = 3 + 12, NUMBER_OF_ITEMS_TO_INDEX = 3 + 13;

using table = std::array<const void*, 3 + 26>;

struct object {
    const table* vtable;
    std::atomic<ULONG> references{1};
};

object* make(const table& vtable) { return new object{&vtable}; }

HRESULT STDMETHODCALLTYPE not_implemented() { return E_NOTIMPL; }
// Any interface asked for is this one: the tray asks only for those it was built for.
HRESULT STDMETHODCALLTYPE query_interface(object* self, REFIID, void** out) {
    ++self->references;
    *out = self;
    return S_OK;
}
ULONG STDMETHODCALLTYPE add_ref(object* self) { return ++self->references; }
ULONG STDMETHODCALLTYPE release(object* self) {
    const ULONG left = --self->references;
    if (left == 0) delete self;
    return left;
}

LONG read_count(const wchar_t* name) {
    DWORD value = 0, size = sizeof(value);
    RegGetValueW(HKEY_CURRENT_USER, SEARCH_MANAGER_DOUBLE_KEY, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
    return static_cast<LONG>(value);
}

HRESULT STDMETHODCALLTYPE number_of_items(object*, LONG* count) {
    *count = read_count(L"TotalItems");
    return S_OK;
}
// Waiting items come in the first queue; the other two stay empty.
HRESULT STDMETHODCALLTYPE number_of_items_to_index(object*, LONG* incremental, LONG* notifications, LONG* high) {
    *incremental = read_count(L"ItemsToIndex");
    *notifications = *high = 0;
    return S_OK;
}

table make_table(std::initializer_list<std::pair<size_t, const void*>> slots) {
    table t;
    t.fill(reinterpret_cast<const void*>(not_implemented));
    t[0] = reinterpret_cast<const void*>(query_interface);
    t[1] = reinterpret_cast<const void*>(add_ref);
    t[2] = reinterpret_cast<const void*>(release);
    for (const auto& [slot, method] : slots) t[slot] = method;
    return t;
}

const table catalog_table = make_table({{NUMBER_OF_ITEMS, reinterpret_cast<const void*>(number_of_items)},
                                        {NUMBER_OF_ITEMS_TO_INDEX, reinterpret_cast<const void*>(number_of_items_to_index)}});

HRESULT STDMETHODCALLTYPE get_catalog(object*, LPCWSTR name, object** out) {
    *out = lstrcmpiW(name, L"SystemIndex") == 0 ? make(catalog_table) : nullptr;
    return *out ? S_OK : E_INVALIDARG;
}
const table manager_table = make_table({{GET_CATALOG, reinterpret_cast<const void*>(get_catalog)}});

HRESULT STDMETHODCALLTYPE create_instance(object*, IUnknown*, REFIID, object** out) {
    *out = make(manager_table);
    return S_OK;
}
const table factory_table = make_table({{CREATE_INSTANCE, reinterpret_cast<const void*>(create_instance)}});

}  // namespace

extern "C" HRESULT __stdcall DllGetClassObject(REFCLSID clsid, REFIID, void** out) {
    *out = IsEqualCLSID(clsid, CLSID_CSearchManager) ? make(factory_table) : nullptr;
    return *out ? S_OK : CLASS_E_CLASSNOTAVAILABLE;
}

// Never unloaded while the test's tray lives.
extern "C" HRESULT __stdcall DllCanUnloadNow() { return S_FALSE; }
