#pragma once

#include <objbase.h>
#include <windows.h>

#include <atomic>

// A heap COM object implementing one interface, for callbacks we hand to the platform. Created with
// one reference, which the creator owns (wrap it in com_ptr with attach).
template <class Interface>
class com_object : public Interface {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (!out) return E_POINTER;
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, __uuidof(Interface))) {
            *out = static_cast<Interface*>(this);
            AddRef();
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

protected:
    virtual ~com_object() = default;

private:
    std::atomic<ULONG> references_{1};
};
