#pragma once

// Windows Search's manager and catalog interfaces, which mingw-w64 lacks (searchapi.h). The slots are
// in the order of the public interface definition: a slot out of place calls the wrong method.
#include <objbase.h>
#include <windows.h>

// CLSID_CSearchManager.
constexpr CLSID CLSID_CSearchManager = {0x7D096C5F, 0xAC08, 0x4F1F, {0xBE, 0xB7, 0x5C, 0x22, 0xC5, 0x17, 0xCE, 0x39}};

// Types of the slots that we never call.
struct ISearchPersistentItemsChangedSink;
struct ISearchViewChangedSink;
struct ISearchNotifyInlineSite;
struct ISearchQueryHelper;
struct ISearchCrawlScopeManager;

struct ISearchCatalogManager : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE get_Name(LPWSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetParameter(LPCWSTR name, PROPVARIANT** value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetParameter(LPCWSTR name, PROPVARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCatalogStatus(int* status, int* paused_reason) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reindex() = 0;
    virtual HRESULT STDMETHODCALLTYPE ReindexMatchingURLs(LPCWSTR pattern) = 0;
    virtual HRESULT STDMETHODCALLTYPE ReindexSearchRoot(LPCWSTR root_url) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ConnectTimeout(DWORD timeout) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ConnectTimeout(DWORD* timeout) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_DataTimeout(DWORD timeout) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_DataTimeout(DWORD* timeout) = 0;
    virtual HRESULT STDMETHODCALLTYPE NumberOfItems(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE NumberOfItemsToIndex(LONG* incremental, LONG* notification_queue,
                                                           LONG* high_priority_queue) = 0;
    virtual HRESULT STDMETHODCALLTYPE URLBeingIndexed(LPWSTR* url) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetURLIndexingState(LPCWSTR url, DWORD* state) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPersistentItemsChangedSink(ISearchPersistentItemsChangedSink** sink) = 0;
    virtual HRESULT STDMETHODCALLTYPE RegisterViewForNotification(LPCWSTR view, ISearchViewChangedSink* sink,
                                                                  DWORD* cookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetItemsChangedSink(ISearchNotifyInlineSite* site, REFIID iid, void** sink,
                                                          GUID* reset_signature, GUID* checkpoint_signature,
                                                          DWORD* last_checkpoint) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnregisterViewForNotification(DWORD cookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetExtensionClusion(LPCWSTR extension, BOOL exclude) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumerateExcludedExtensions(IEnumString** extensions) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetQueryHelper(ISearchQueryHelper** helper) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_DiacriticSensitivity(BOOL sensitive) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_DiacriticSensitivity(BOOL* sensitive) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCrawlScopeManager(ISearchCrawlScopeManager** manager) = 0;
};

struct ISearchManager : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetIndexerVersionStr(LPWSTR* version) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIndexerVersion(DWORD* major, DWORD* minor) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetParameter(LPCWSTR name, PROPVARIANT** value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetParameter(LPCWSTR name, const PROPVARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ProxyName(LPWSTR* proxy_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_BypassList(LPWSTR* bypass_list) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetProxy(int use_proxy, BOOL local_bypass, DWORD port, LPCWSTR proxy_name,
                                               LPCWSTR bypass_list) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCatalog(LPCWSTR catalog, ISearchCatalogManager** manager) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_UserAgent(LPWSTR* user_agent) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_UserAgent(LPCWSTR user_agent) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_UseProxy(int* use_proxy) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LocalBypass(BOOL* local_bypass) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_PortNumber(DWORD* port) = 0;
};

__CRT_UUID_DECL(ISearchCatalogManager, 0xAB310581, 0xAC80, 0x11D1, 0x8D, 0xF3, 0x00, 0xC0, 0x4F, 0xB6, 0xEF, 0x50)
__CRT_UUID_DECL(ISearchManager, 0xAB310581, 0xAC80, 0x11D1, 0x8D, 0xF3, 0x00, 0xC0, 0x4F, 0xB6, 0xEF, 0x69)
