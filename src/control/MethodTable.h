// The socket's methods by their names. Each method lists its parameters; any other parameter is an error, so that a
// request with a misspelled "dryrun" moves no windows.
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
    const std::shared_ptr<ControlPeer>& peer; // null if the agent itself calls the method
};

/// Main thread only.
class MethodTable {
  public:
    using Run = std::function<ControlReply(const MethodCall&)>;
    /// What the agent must know about the windows before it carries out a request.
    enum class Needs {
        nothing,        // but a request with a parameter "window" is handled as with `currentWindows`
        currentWindows, // if windows changed since the last poll, the request waits for the next poll
        currentFrames,  // the request waits until the frames of the windows were read on the polling queue
    };
    struct Method {
        std::vector<std::string_view> parameters;
        Run run;
        bool respondsOnceSaved = false;
        Needs needs = Needs::nothing;
    };

    void add(std::string name, std::vector<std::string_view> parameters, Run run, Needs needs = Needs::nothing);
    /// Adds a method that changes stored data. The response is sent once the data is on disk.
    void addSaved(std::string name, std::vector<std::string_view> parameters, Run run, Needs needs = Needs::nothing);

    /// Null if there is no such method.
    const Method* find(const std::string& name) const;
    std::vector<std::string> names() const; // sorted

    /// Runs the method. Throws `DecodingError` for a parameter that the method does not list.
    static ControlReply call(const Method& method, const nlohmann::json& parameters,
                             const std::shared_ptr<ControlPeer>& peer);

  private:
    std::unordered_map<std::string, Method> methods_;
};

} // namespace kova
