#include <windows.h>

#include "common/test_registry_win32.h"
#include "explorer/registry_port_win32.h"
#include "host/explorer/registry_contract_cases.h"

#include <stdexcept>

namespace {

// A throwaway key of the real registry stands in for the three hives: the user's, the machine's, and
// the classes root, which like Wine 8's is the machine's classes alone.
class throwaway_registry final : public registry_under_test {
public:
    throwaway_registry() : base_(L"Software\\Veldrake Contract Tests\\" + std::to_wstring(GetCurrentProcessId())) {
        RegDeleteTreeW(HKEY_CURRENT_USER, base_.c_str());
        for (size_t i = 0; i < 3; ++i) {
            if (RegCreateKeyExW(HKEY_CURRENT_USER, (base_ + SUBKEYS[i]).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                &roots_[i], nullptr) != ERROR_SUCCESS) {
                throw std::runtime_error("cannot create the throwaway key");
            }
        }
        port_.emplace(roots_[0], roots_[1], roots_[2], false);
    }
    ~throwaway_registry() override {
        for (const HKEY root : roots_) RegCloseKey(root);
        RegDeleteTreeW(HKEY_CURRENT_USER, base_.c_str());
    }
    explorer::registry_port& port() override { return *port_; }
    void plant(explorer::hive root, const std::wstring& key, const std::wstring& name, const explorer::raw_value& value) override {
        test_registry::set_value(roots_[static_cast<size_t>(root)], key, name.c_str(), value.type, value.bytes.data(),
                                 value.bytes.size());
    }

private:
    static constexpr const wchar_t* SUBKEYS[] = {L"\\user", L"\\machine", L"\\machine\\Software\\Classes"};
    std::wstring base_;
    HKEY roots_[3] = {};
    std::optional<explorer::platform_registry> port_;
};

}  // namespace

std::unique_ptr<registry_under_test> make_registry_under_test() { return std::make_unique<throwaway_registry>(); }
