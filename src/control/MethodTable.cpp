#include "control/MethodTable.h"

#include <algorithm>
#include <utility>

namespace kova {

void MethodTable::add(std::string name, std::vector<std::string_view> parameters, Run run, Needs needs) {
    methods_.emplace(std::move(name), Method{std::move(parameters), std::move(run), false, needs});
}

void MethodTable::addSaved(std::string name, std::vector<std::string_view> parameters, Run run, Needs needs) {
    methods_.emplace(std::move(name), Method{std::move(parameters), std::move(run), true, needs});
}

const MethodTable::Method* MethodTable::find(const std::string& name) const {
    const auto found = methods_.find(name);
    return found == methods_.end() ? nullptr : &found->second;
}

std::vector<std::string> MethodTable::names() const {
    std::vector<std::string> all;
    for (const auto& [name, method] : methods_) all.push_back(name);
    std::sort(all.begin(), all.end());
    return all;
}

ControlReply MethodTable::call(const Method& method, const nlohmann::json& parameters,
                               const std::shared_ptr<ControlPeer>& peer) {
    const JsonCursor given(parameters, "");
    for (const auto& [name, value] : given.members()) {
        const auto& known = method.parameters;
        if (std::find(known.begin(), known.end(), name) == known.end()) value.fail("there is no such parameter");
    }
    return method.run({given, peer});
}

} // namespace kova
