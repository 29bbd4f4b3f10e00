#include "platform/x11/ClientProcesses.h"

#include <unistd.h>

#include <array>
#include <fstream>
#include <sstream>

namespace kova::x11 {

namespace {

std::string hostNameOfThisMachine() {
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

} // namespace

OwnerEvidence evidenceOf(const ClientWindow& client) {
    static const std::string hostName = hostNameOfThisMachine();
    OwnerEvidence evidence;
    evidence.isOfThisMachine = isSameMachine(client.clientMachine, hostName);
    evidence.reported = client.reportedProcess;
    if (client.claimedProcess) evidence.claimed = static_cast<pid_t>(*client.claimedProcess);
    return evidence;
}

std::optional<pid_t> attributedProcess(const OwnerEvidence& evidence) {
    if (!evidence.isOfThisMachine) return std::nullopt;
    return evidence.reported ? evidence.reported : evidence.claimed;
}

std::optional<std::string> whyUnverified(const OwnerEvidence& evidence, std::optional<pid_t> innerNumber) {
    if (!evidence.isOfThisMachine) return "its window belongs to a program on another machine";
    if (!evidence.reported) return "the X server does not say which process its window belongs to";
    const bool agrees = !evidence.claimed || evidence.claimed == evidence.reported || evidence.claimed == innerNumber;
    if (agrees) return std::nullopt;
    // Either the program forwards windows of other programs, or the window claims a false number.
    return "its window names process " + std::to_string(*evidence.claimed) + ", but the X server says process " +
           std::to_string(*evidence.reported);
}

std::optional<pid_t> innerProcessNumber(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (!line.starts_with("NSpid:")) continue;
        std::istringstream numbers(line.substr(line.find(':') + 1));
        std::optional<pid_t> last;
        for (pid_t number = 0; numbers >> number;) last = number;
        return last;
    }
    return std::nullopt;
}

ClientProcesses::ClientProcesses(const XConnection& connection, bool isEnabled) : connection_(connection) {
    if (!isEnabled) return;
    constexpr std::uint32_t kVersion = (1U << 16) + 2;
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_res_id);
    if (!extension || !extension->present) return;
    const XReply<xcb_res_query_version_reply_t> version(
        xcb_res_query_version_reply(connection.get(), xcb_res_query_version(connection.get(), 1, 2), nullptr));
    if (!version || (std::uint32_t{version->server_major} << 16) + version->server_minor < kVersion) return;
    const XReply<xcb_res_query_client_ids_reply_t> own(
        xcb_res_query_client_ids_reply(connection.get(), request(xcb_generate_id(connection.get())), nullptr));
    isAvailable_ = processIn(own.get()) == getpid();
}

xcb_res_query_client_ids_cookie_t ClientProcesses::request(xcb_window_t window) const {
    const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return xcb_res_query_client_ids(connection_.get(), 1, &spec);
}

std::optional<pid_t> ClientProcesses::processIn(const xcb_res_query_client_ids_reply_t* reply) {
    if (!reply) return std::nullopt;
    for (auto id = xcb_res_query_client_ids_ids_iterator(reply); id.rem > 0; xcb_res_client_id_value_next(&id)) {
        const bool isProcess = (id.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
        if (!isProcess || xcb_res_client_id_value_value_length(id.data) < 1) continue;
        const auto process = static_cast<pid_t>(*xcb_res_client_id_value_value(id.data));
        if (process > 0) return process;
    }
    return std::nullopt;
}

} // namespace kova::x11
