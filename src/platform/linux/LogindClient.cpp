#include "platform/linux/LogindClient.h"

#include "support/Log.h"

#include <sdbus-c++/sdbus-c++.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <tuple>
#include <utility>

namespace kova {

namespace {

constexpr const char* kService = "org.freedesktop.login1";
constexpr const char* kManagerPath = "/org/freedesktop/login1";
constexpr const char* kManager = "org.freedesktop.login1.Manager";
constexpr const char* kSession = "org.freedesktop.login1.Session";
constexpr const char* kUser = "org.freedesktop.login1.User";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";

using Properties = std::map<std::string, sdbus::Variant>;

/// The property, if it exists and has the type.
template <class T>
std::optional<T> property(const Properties& properties, const char* name) {
    const auto found = properties.find(name);
    if (found == properties.end() || !found->second.containsValueOfType<T>()) return std::nullopt;
    return found->second.get<T>();
}

std::string signalRule(const std::string& interface, const std::string& member) {
    return "interface='" + interface + "',member='" + member + "'";
}

} // namespace

SessionHints SessionHints::ofThisProcess() {
    SessionHints hints;
    if (const char* id = std::getenv("XDG_SESSION_ID"); id && *id) hints.sessionID = id;
    hints.process = getpid();
    hints.user = getuid();
    return hints;
}

LogindClient::LogindClient(std::string busAddress, SessionHints hints, EventLoop& loop, Listener listener) :
    hints_(std::move(hints)), bus_("system bus", std::move(busAddress), loop), listener_(std::move(listener)) {
    bus_.open(
        signals(), [this] { findSession(); }, [this] { onDisconnected("the system bus is gone"); });
}

std::string LogindClient::description() const {
    if (!bus_.isConnected()) {
        return "There is no system bus (" + bus_.problem() +
               "): sleep, the lock and a switch to another user go unnoticed.";
    }
    if (!hasSession()) return problem_ + ": sleep, the lock and a switch to another user may go unnoticed.";
    return "logind tells of sleep, the lock and a switch to another user; this is session " + sessionName_ + ".";
}

std::vector<BusSignal> LogindClient::signals() {
    std::vector<BusSignal> all;
    all.push_back({kService, signalRule(kManager, "PrepareForSleep"), [this](sdbus::Message& message) {
                       bool isPreparing = false;
                       message >> isPreparing;
                       listener_.sleep(isPreparing);
                   }});
    all.push_back({kService, signalRule(kManager, "SessionNew"), [this](sdbus::Message&) {
                       if (!hasSession()) findSession(); // the new session may be the agent's
                   }});
    all.push_back({kService, signalRule(kManager, "SessionRemoved"), [this](sdbus::Message& message) {
                       std::string id;
                       sdbus::ObjectPath path;
                       message >> id >> path;
                       if (path == sessionPath_) findSession();
                   }});
    all.push_back({kService, signalRule(kSession, "Lock"), [this](sdbus::Message& message) {
                       if (message.getPath() == sessionPath_) listener_.lockSignal();
                   }});
    all.push_back({kService, signalRule(kSession, "Unlock"), [this](sdbus::Message& message) {
                       if (message.getPath() == sessionPath_) listener_.unlockSignal();
                   }});
    all.push_back({kService, signalRule(kProperties, "PropertiesChanged") + ",arg0='" + kSession + "'",
                   [this](sdbus::Message& message) {
                       if (message.getPath() == sessionPath_) propertiesChanged(message);
                   }});
    all.push_back(ownerChange(kService, [this](const std::string& owner) {
        if (owner.empty()) {
            onDisconnected("logind does not run");
        } else {
            findSession();
        }
    }));
    return all;
}

void LogindClient::findSession() {
    const Number round = ++round_;
    candidate_.reset();
    bus_.queryOwner(kService, [this, round](const std::string& owner) {
        if (round != round_) return;
        if (owner.empty()) return onDisconnected("logind does not run");
        bus_.call({kService, kManagerPath, kProperties, "Get"}, {kManager, "PreparingForSleep"},
                  [this, round](sdbus::Message* reply) {
                      if (!reply || round != round_) return;
                      sdbus::Variant value;
                      *reply >> value;
                      listener_.sleep(value.get<bool>());
                  });
        search(Search::namedByEnvironment);
    });
}

void LogindClient::onDisconnected(std::string problem) {
    ++round_;
    if (problem != problem_) log(LogLevel::note, problem);
    problem_ = std::move(problem);
    sessionPath_.clear();
    listener_.disconnected();
}

void LogindClient::search(Search way) {
    const auto round = round_;
    const auto onePath = [this, round, way](sdbus::Message* reply) {
        if (round != round_) return;
        sdbus::ObjectPath path;
        if (reply) *reply >> path;
        examine(path.empty() ? std::vector<std::string>() : std::vector<std::string>{path}, way);
    };
    const auto managerMethod = [](const char* method) { return BusMethod{kService, kManagerPath, kManager, method}; };
    switch (way) {
    case Search::namedByEnvironment:
        if (!hints_.sessionID) return search(Search::ofProcess);
        return bus_.call(managerMethod("GetSession"), MessageBus::Words{*hints_.sessionID}, onePath);
    case Search::ofProcess:
        return bus_.call(managerMethod("GetSessionByPID"), static_cast<std::uint32_t>(hints_.process), onePath);
    case Search::displayOfUser:
        return bus_.call(
            managerMethod("GetUser"), static_cast<std::uint32_t>(hints_.user), [this, round](sdbus::Message* reply) {
                if (round != round_) return;
                if (!reply) return examine({}, Search::displayOfUser);
                sdbus::ObjectPath user;
                *reply >> user;
                bus_.call({kService, user, kProperties, "Get"}, {kUser, "Display"},
                          [this, round](sdbus::Message* displayReply) {
                              if (round != round_) return;
                              std::vector<std::string> paths;
                              if (displayReply) {
                                  sdbus::Variant value;
                                  *displayReply >> value;
                                  const auto display = value.get<sdbus::Struct<std::string, sdbus::ObjectPath>>();
                                  if (!std::get<0>(display).empty()) paths.push_back(std::get<1>(display));
                              }
                              examine(std::move(paths), Search::displayOfUser);
                          });
            });
    case Search::anyOfUser:
        return bus_.call(managerMethod("ListSessions"), MessageBus::Words{}, [this, round](sdbus::Message* reply) {
            if (round != round_) return;
            using Listed = sdbus::Struct<std::string, std::uint32_t, std::string, std::string, sdbus::ObjectPath>;
            std::vector<Listed> listed;
            if (reply) *reply >> listed;
            std::vector<std::string> paths;
            for (const Listed& session : listed) {
                if (std::get<1>(session) == hints_.user) paths.push_back(std::get<4>(session));
            }
            examine(std::move(paths), Search::anyOfUser);
        });
    case Search::over:
        return finishSearch();
    }
}

/// Uses the first graphical session, else continues with the next way to search.
void LogindClient::examine(std::vector<std::string> paths, Search way) {
    if (paths.empty()) return search(static_cast<Search>(static_cast<int>(way) + 1));
    const std::string path = paths.front();
    paths.erase(paths.begin());
    const auto round = round_;
    querySession(path, [this, round, way, remaining = std::move(paths)](const std::optional<Session>& session) {
        if (round != round_) return;
        if (session && session->isOurs) {
            if (session->isGraphical()) return use(*session);
            if (!candidate_) candidate_ = session; // a desktop started by startx runs in a terminal's session
        }
        examine(remaining, way);
    });
}

void LogindClient::querySession(const std::string& path, std::function<void(std::optional<Session>)> known) {
    bus_.call({kService, path, kProperties, "GetAll"}, {kSession},
              [this, path, known = std::move(known)](sdbus::Message* reply) {
                  if (!reply) return known(std::nullopt);
                  Properties properties;
                  *reply >> properties;
                  using User = sdbus::Struct<std::uint32_t, sdbus::ObjectPath>;
                  const auto user = property<User>(properties, "User");
                  Session session;
                  session.path = path;
                  session.id = property<std::string>(properties, "Id").value_or("");
                  session.type = property<std::string>(properties, "Type").value_or("");
                  session.isOurs = user && std::get<0>(*user) == hints_.user &&
                                   property<std::string>(properties, "Class").value_or("user") == "user" &&
                                   property<std::string>(properties, "State") != "closing";
                  session.isActive = property<bool>(properties, "Active").value_or(true);
                  session.isLocked = property<bool>(properties, "LockedHint").value_or(false);
                  known(session);
              });
}

void LogindClient::use(const Session& session) {
    if (sessionPath_ != session.path) {
        log(LogLevel::note, "logind knows this session as " + session.id + " (" + session.type + ")");
    }
    sessionPath_ = session.path;
    sessionName_ = session.id + " (" + session.type + ")";
    problem_.clear();
    candidate_.reset();
    listener_.active(session.isActive);
    listener_.lockedHint(session.isLocked);
}

void LogindClient::finishSearch() {
    if (const auto session = candidate_) return use(*session);
    onDisconnected("logind knows no session of this user");
}

void LogindClient::propertiesChanged(sdbus::Message& message) {
    std::string interface;
    Properties changed;
    std::vector<std::string> withoutValue;
    message >> interface >> changed >> withoutValue;
    if (const auto isActive = property<bool>(changed, "Active")) listener_.active(*isActive);
    if (const auto isLocked = property<bool>(changed, "LockedHint")) listener_.lockedHint(*isLocked);
    for (const std::string& name : withoutValue) {
        if (name == "Active" || name == "LockedHint") return querySessionAgain();
    }
}

void LogindClient::querySessionAgain() {
    querySession(sessionPath_, [this, round = round_](const std::optional<Session>& session) {
        if (session && round == round_) use(*session);
    });
}

} // namespace kova
