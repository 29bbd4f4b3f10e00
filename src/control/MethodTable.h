// The socket's methods by their names. Each lists the parameters that it takes; any other parameter is an error, since
// a misspelled "dryrun" must not move windows.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kova {

/// Main thread only.
class MethodTable {
  public:
    struct Call {
        JsonCursor parameters;
        const std::shared_ptr<ControlPeer>& peer; // null when the agent itself calls
    };
    using Run = std::function<ControlReply(const Call&)>;
    struct Method {
        std::vector<std::string_view> parameters;
        Run run;
        bool respondsOnceSaved = false;
    };

    void add(std::string name, std::vector<std::string_view> parameters, Run run);
    /// Adds a method that changes stored data: its response is sent once the data is on disk.
    void addSaved(std::string name, std::vector<std::string_view> parameters, Run run);

    /// Null when there is no such method.
    const Method* find(const std::string& name) const;
    std::vector<std::string> names() const; // sorted

    /// Throws `DecodingError` for a parameter that the method does not take.
    static ControlReply call(const Method& method, const nlohmann::json& parameters,
                             const std::shared_ptr<ControlPeer>& peer);

  private:
    std::unordered_map<std::string, Method> methods_;
};

} // namespace kova
