#pragma once

// The AppX packaging interfaces that the package pass reads a package's identity with. mingw-w64
// lacks appxpackaging.h; the slots follow the public IDL, and the ones not called are placeholders
// that keep the order.
#include <windows.h>

#include <objidl.h>

struct IAppxManifestPackageId : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetName(LPWSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetArchitecture(void* architecture) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPublisher(LPWSTR* publisher) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVersion(UINT64* version) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetResourceId(LPWSTR* resource_id) = 0;
    virtual HRESULT STDMETHODCALLTYPE ComparePublisher(LPCWSTR other, BOOL* same) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPackageFullName(LPWSTR* full_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPackageFamilyName(LPWSTR* family_name) = 0;
};

struct IAppxManifestReader : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetPackageId(IAppxManifestPackageId** id) = 0;
};

struct IAppxPackageReader : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetBlockMap(IUnknown** block_map) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFootprintFile(int type, IUnknown** file) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPayloadFile(LPCWSTR name, IUnknown** file) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPayloadFiles(IUnknown** files) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetManifest(IAppxManifestReader** manifest) = 0;
};

struct IAppxFactory : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CreatePackageWriter(IStream* output, void* settings, IUnknown** writer) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreatePackageReader(IStream* input, IAppxPackageReader** reader) = 0;
};

namespace appx {
// {5842a140-ff9f-4166-8f5c-62f5b7b0c781}
constexpr CLSID CLSID_AppxFactory = {0x5842a140, 0xff9f, 0x4166, {0x8f, 0x5c, 0x62, 0xf5, 0xb7, 0xb0, 0xc7, 0x81}};
// {beb94909-e451-438b-b5a7-d79e767b75d8}
constexpr IID IID_IAppxFactory = {0xbeb94909, 0xe451, 0x438b, {0xb5, 0xa7, 0xd7, 0x9e, 0x76, 0x7b, 0x75, 0xd8}};
}  // namespace appx
