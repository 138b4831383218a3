#pragma once

#include <windows.h>

#include <endpointvolume.h>
#include <mmdeviceapi.h>

// mingw-w64 declares the Core Audio interfaces with their ids but not the enumerator's class id.
namespace sdk {
constexpr CLSID CLSID_MMDeviceEnumerator = {0xBCDE0395, 0xE52F, 0x467C, {0x8E, 0x3D, 0xC4, 0x57, 0x92, 0x91, 0x69, 0x2E}};
}  // namespace sdk
