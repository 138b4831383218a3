#include "host/explorer/fake_registry.h"
#include "host/explorer/registry_contract_cases.h"

namespace {
struct in_memory final : registry_under_test {
    explorer::registry_port& port() override { return registry; }
    void plant(explorer::hive root, const std::wstring& key, const std::wstring& name, const explorer::raw_value& value) override {
        registry.plant(root, key, name, value);
    }
    fake_registry registry;
};
}  // namespace

std::unique_ptr<registry_under_test> make_registry_under_test() { return std::make_unique<in_memory>(); }
