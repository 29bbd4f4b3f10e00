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

struct MethodCall {
    JsonCursor parameters;
    const std::shared_ptr<ControlPeer>& peer; // null when the agent itself calls
};

/// Main thread only.
class MethodTable {
  public:
    using Run = std::function<ControlReply(const MethodCall&)>;
    /// What must be known of the windows before a request is carried out. A request with a "window" always waits for
    /// the next poll if windows changed since the last one.
    enum class Needs {
        nothing,
        currentWindows, // always waits for that poll, too
        currentFrames,  // waits until frames were read on the polling queue
    };
    struct Method {
        std::vector<std::string_view> parameters;
        Run run;
        bool respondsOnceSaved = false;
        Needs needs = Needs::nothing;
    };

    void add(std::string name, std::vector<std::string_view> parameters, Run run, Needs needs = Needs::nothing);
    /// Adds a method that changes stored data: its response is sent once the data is on disk.
    void addSaved(std::string name, std::vector<std::string_view> parameters, Run run, Needs needs = Needs::nothing);

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
