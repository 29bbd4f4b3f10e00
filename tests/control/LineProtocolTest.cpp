// The socket with a fake agent. Whatever one client sends or leaves unread, the other clients are served.
#include "control/ControlHandling.h"
#include "control/ControlServer.h"
#include "control/client/ControlClient.h"
#include "control/client/ControlCodes.h"
#include "platform/simulated/VirtualTime.h"
#include "tests/control/SocketClient.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <ctime>
#include <random>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

/// Responds to "echo" with its parameters, to "large" with the requested number of bytes, to "flood" with the requested
/// lines, to "count" with the number of requests so far, to "later" when the test calls the held responder, and to
/// other methods with errors.
class FakeHandling : public ControlHandling {
  public:
    void handle(const ControlRequest& request, const std::shared_ptr<ControlPeer>& peer,
                ControlResponder respond) override {
        ++count;
        if (request.method == "later") {
            if (!request.parameters.empty()) peer->sendAfterResponse(request.parameters["notifies"].dump());
            return held.push_back(std::move(respond));
        }
        if (request.method == "count") return respond(json(count));
        respond(reply(request, peer));
    }
    int count = 0;
    std::vector<ControlResponder> held;

  private:
    static ControlReply reply(const ControlRequest& request, const std::shared_ptr<ControlPeer>& peer) {
        if (request.method == "large") return std::string(request.parameters["bytes"].get<std::size_t>(), 'x');
        if (request.method == "echo") return request.parameters;
        if (request.method == "fail") throw std::runtime_error("broken");
        if (request.method == "refuse") return ControlFailure{controlCode::refused, "no", {{"choices", {"a"}}}};
        if (request.method == "flood") {
            const std::string line(request.parameters["bytes"].get<std::size_t>(), '1');
            for (int i = 0; i < request.parameters["lines"].get<int>() && peer->isConnected(); ++i) peer->send(line);
            return json(nullptr);
        }
        return ControlFailure{controlCode::methodNotFound, "unknown", nullptr};
    }
};

class LineProtocol : public testing::Test {
  protected:
    void listen(ControlServerLimits limits = {}) {
        auto claim = AgentClaim::take({path(), true});
        ASSERT_TRUE(std::holds_alternative<AgentClaim>(claim)) << std::get<AgentClaimRefusal>(claim).message;
        server.emplace(std::get<AgentClaim>(std::move(claim)), queue, agent, limits);
        ASSERT_EQ(server->start(), std::nullopt);
        server->serve();
    }
    SocketClient client() {
        return SocketClient(path(), [this] { queue.runDue(); });
    }
    std::string path() const { return (folder.path() / "kova" / "agent.sock").string(); }

    TemporaryFolder folder;
    VirtualMainQueue queue;
    FakeHandling agent;
    std::optional<ControlServer> server;
};

json echoed(const json& reply) {
    return reply.is_object() ? reply.value("result", reply) : reply;
}
int codeOf(const json& reply) {
    return reply.is_object() && reply.contains("error") ? reply["error"]["code"].get<int>() : 0;
}

constexpr std::string_view kEcho = R"({"jsonrpc":"2.0","id":7,"method":"echo","params":{"a":1}})";

} // namespace

TEST_F(LineProtocol, RespondsToEachKindOfLineAsJsonRpcRequires) {
    listen();
    struct Case {
        std::string line;
        int code; // 0: a result
        json id;
    };
    const std::string deep(200'000, '[');
    const std::vector<Case> cases = {
        {std::string(kEcho), 0, 7},
        {std::string(kEcho) + "\r", 0, 7},
        {R"({"jsonrpc":"2.0","id":"x","method":"echo"})", 0, "x"},
        {R"({"jsonrpc":"2.0","id":null,"method":"echo"})", 0, nullptr},
        {R"({"jsonrpc":"2.0","id":1.5,"method":"echo","params":[1,2]})", 0, 1.5},
        {R"({"jsonrpc":"2.0","id":1,"method":"nothing"})", controlCode::methodNotFound, 1},
        {R"({"jsonrpc":"2.0","id":1,"method":"echo\u0000"})", controlCode::methodNotFound, 1},
        {R"({"jsonrpc":"2.0","id":1,"method":"refuse"})", controlCode::refused, 1},
        {R"({"jsonrpc":"2.0","id":1,"method":"fail"})", controlCode::internalError, 1},
        {R"({"jsonrpc":"1.0","id":1,"method":"echo"})", controlCode::invalidRequest, 1},
        {R"({"id":1,"method":"echo"})", controlCode::invalidRequest, 1},
        {R"({"jsonrpc":"2.0","id":1})", controlCode::invalidRequest, 1},
        {R"({"jsonrpc":"2.0","id":1,"method":5})", controlCode::invalidRequest, 1},
        {R"({"jsonrpc":"2.0","id":{},"method":"echo"})", controlCode::invalidRequest, nullptr},
        {R"({"jsonrpc":"2.0","id":1,"method":"echo","params":"a"})", controlCode::invalidRequest, 1},
        {"[]", controlCode::invalidRequest, nullptr},
        {"7", controlCode::invalidRequest, nullptr},
        {"null", controlCode::invalidRequest, nullptr},
        {"", controlCode::parseError, nullptr},
        {"{", controlCode::parseError, nullptr},
        {"nonsense", controlCode::parseError, nullptr},
        {std::string(kEcho) + std::string(kEcho), controlCode::parseError, nullptr},
        {std::string("{\"a\":\"\0\"}", 9), controlCode::parseError, nullptr},
        {"{\"a\":\"\xC3\x28\"}", controlCode::parseError, nullptr},
        {"\xFF\xFE", controlCode::parseError, nullptr},
        {deep, controlCode::parseError, nullptr},
        {std::string(kLongestControlLine + 1, ' '), controlCode::parseError, nullptr},
        {std::string(5 * kLongestControlLine, '7'), controlCode::parseError, nullptr},
    };
    auto connection = client();
    for (const Case& c : cases) {
        const json reply = connection.request(c.line);
        SCOPED_TRACE(c.line.substr(0, 100) + " → " + reply.dump().substr(0, 300));
        EXPECT_EQ(codeOf(reply), c.code);
        EXPECT_EQ(reply.value("jsonrpc", ""), "2.0");
        EXPECT_EQ(reply["id"], c.id);
        EXPECT_NE(reply.contains("error"), reply.contains("result"));
    }
    // The longest allowed line gets a response, and so does a line that is sent byte by byte.
    const std::string start = R"({"jsonrpc":"2.0","id":7,"method":"echo","params":{"a":")";
    const std::string filling(kLongestControlLine - start.size() - 3, 'a');
    EXPECT_EQ(echoed(connection.request(start + filling + "\"}}"))["a"].get<std::string>(), filling);
    for (const char c : std::string(kEcho)) connection.send(std::string(1, c));
    EXPECT_EQ(echoed(connection.request("")), json({{"a", 1}}));
    EXPECT_EQ(connection.request(R"({"jsonrpc":"2.0","id":1,"method":"refuse"})")["error"]["data"],
              json({{"choices", {"a"}}}));
}

TEST_F(LineProtocol, CarriesOutBatchesInOrderAndDoesNotRespondToNotifications) {
    listen();
    auto connection = client();
    const std::string notification = R"({"jsonrpc":"2.0","method":"fail"})";
    const json replies = connection.request("[" + std::string(kEcho) + "," + notification +
                                            R"(,5,{"jsonrpc":"2.0","id":2,"method":"x"}])");
    ASSERT_EQ(replies.size(), 3u) << replies;
    EXPECT_EQ(echoed(replies[0]), json({{"a", 1}}));
    EXPECT_EQ(codeOf(replies[1]), controlCode::invalidRequest);
    EXPECT_EQ(codeOf(replies[2]), controlCode::methodNotFound);

    connection.send(notification + "\n[" + notification + "]\n");
    EXPECT_EQ(connection.request(kEcho)["id"], 7) << "notifications get no response";
    EXPECT_EQ(agent.count, 6);

    std::string large = "[" + notification;
    for (int i = 0; i < 100; ++i) large += "," + notification;
    EXPECT_EQ(codeOf(connection.request(large + "]")), controlCode::invalidRequest);
    EXPECT_EQ(agent.count, 6);
}

TEST_F(LineProtocol, ServesAClientBesideTwoHundredSilentClients) {
    listen();
    std::vector<SocketClient> silent;
    for (int i = 0; i < 200; ++i) {
        silent.push_back(client());
        if (i % 2 == 1) silent.back().send(kEcho.substr(0, 30));
    }
    auto connection = client();
    EXPECT_EQ(echoed(connection.request(kEcho)), json({{"a", 1}}));

    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LE(after.ru_nvcsw - before.ru_nvcsw, 5) << "silent clients do not wake the agent up";

    // A client that ends its input within a line gets an error and is disconnected. A client that ends its input
    // without having sent anything is disconnected.
    silent[1].endSending();
    EXPECT_EQ(codeOf(silent[1].message()), controlCode::parseError);
    EXPECT_TRUE(silent[1].isClosedByAgent());
    silent[0].endSending();
    EXPECT_TRUE(silent[0].isClosedByAgent());
}

TEST_F(LineProtocol, RespondsToAllPipelinedRequestsAndThenDisconnects) {
    listen();
    bool isAgentBusy = true;
    SocketClient connection(path(), [&] {
        if (!isAgentBusy) queue.runDue();
    });
    constexpr std::size_t kCount = 3000;
    std::string many;
    for (std::size_t i = 0; i < kCount; ++i) {
        many += R"({"jsonrpc":"2.0","id":)" + std::to_string(i) + R"(,"method":"echo"})" + "\n";
    }
    connection.send(many);
    connection.endSending();
    SocketClient other(path(), [] {});
    other.send(std::string(kEcho) + "\n");
    while (queue.pendingCount() < 2) std::this_thread::yield();
    EXPECT_EQ(queue.pendingCount(), 2U) << "only one request of each client may be on the main queue";
    isAgentBusy = false;
    for (std::size_t i = 0; i < kCount; ++i) ASSERT_EQ(connection.message()["id"], i);
    EXPECT_TRUE(connection.isClosedByAgent());
}

TEST_F(LineProtocol, DisconnectsOnlyClientsThatDoNotRead) {
    listen({.unsentBytes = 100'000});
    auto unreading = client();
    auto other = client();
    unreading.send(R"({"jsonrpc":"2.0","id":1,"method":"flood","params":{"bytes":1000,"lines":100000}})"
                   "\n");
    EXPECT_EQ(echoed(other.request(kEcho)), json({{"a", 1}}));
    EXPECT_TRUE(unreading.isClosedByAgent());
    // A client that reads gets everything, even a line that is longer than the limit for unread output.
    other.send(R"({"jsonrpc":"2.0","id":1,"method":"flood","params":{"bytes":3000000,"lines":1}})"
               "\n");
    EXPECT_EQ(other.line()->size(), 3'000'000u);
    EXPECT_EQ(other.message()["id"], 1);
}

TEST_F(LineProtocol, AcceptsOnlyClientsOfThisUserUpToALimit) {
    listen({.connections = 2});
    auto first = client();
    auto second = client();
    EXPECT_EQ(first.request(kEcho)["id"], 7);
    EXPECT_EQ(second.request(kEcho)["id"], 7);
    auto third = client();
    const std::string full = third.message()["error"].value("message", "");
    EXPECT_EQ(full, "The agent serves 2 clients already and takes no more; end some of them and try again");
    EXPECT_TRUE(third.isClosedByAgent());
    first.endSending();
    EXPECT_TRUE(first.isClosedByAgent());
    EXPECT_EQ(client().request(kEcho)["id"], 7);

    server.reset();
    listen({.onlyUser = geteuid() + 1});
    EXPECT_TRUE(client().isClosedByAgent());
}

TEST_F(LineProtocol, TheResponseToABatchIsLimitedAndABatchDelaysNoOtherClient) {
    listen({.longestBatchResponse = 100'000});
    auto connection = client();
    const std::string large = R"({"jsonrpc":"2.0","id":1,"method":"large","params":{"bytes":60000}})";
    json replies = connection.request("[" + large + "," + large + "," + large + "," + std::string(kEcho) + "]");
    ASSERT_EQ(replies.size(), 4u);
    EXPECT_EQ(replies[1]["result"].get<std::string>().size(), 60'000u) << "the response that reaches the limit is sent";
    for (const std::size_t i : {2u, 3u}) EXPECT_EQ(codeOf(replies[i]), controlCode::refused) << i;
    EXPECT_EQ(agent.count, 2);

    // Another client's request waits for one batch of each earlier client, not for all of their batches.
    std::string batch = "[" + std::string(kEcho);
    for (int i = 1; i < 100; ++i) batch += "," + std::string(kEcho);
    std::vector<SocketClient> eager;
    for (int i = 0; i < 20; ++i) {
        eager.push_back(SocketClient(path(), [] {}));
        for (int j = 0; j < 10; ++j) eager.back().send(batch + "]\n");
    }
    SocketClient late(path(), [] {});
    late.send(R"({"jsonrpc":"2.0","id":1,"method":"count"})"
              "\n");
    ASSERT_TRUE(waitUntil([] {}, [this] { return queue.pendingCount() == 21; })) << queue.pendingCount();
    agent.count = 0;
    queue.runDue();
    EXPECT_LE(late.message()["result"], 21);
    EXPECT_GE(agent.count, 20 * 100);
}

TEST_F(LineProtocol, RequestsAfterADelayedResponseWaitForIt) {
    listen();
    auto connection = client();
    auto other = client();
    // The server may read the input of one client after later input of another client. So the test first waits for the
    // held requests, and then for the response to a request of `other`.
    const auto isHeld = [&](std::size_t count) {
        return waitUntil([this] { queue.runDue(); }, [&] { return agent.held.size() >= count; }) &&
               other.request(kEcho)["id"] == 7 && agent.held.size() == count;
    };
    const std::string later = R"({"jsonrpc":"2.0","id":"later","method":"later"})";
    connection.send(later + "\n[" + later + "," + std::string(kEcho) + "]\n" + std::string(kEcho) + "\n");
    ASSERT_TRUE(isHeld(1)) << "the next line waits for the response: " << agent.held.size();
    agent.held[0](json("a"));
    EXPECT_EQ(connection.message()["result"], "a");
    ASSERT_TRUE(isHeld(2)) << agent.held.size();
    agent.held[1](json("b"));
    EXPECT_EQ(connection.message().size(), 2u);
    EXPECT_EQ(connection.message()["id"], 7);

    connection.send(R"({"jsonrpc":"2.0","id":3,"method":"later","params":{"notifies":"notification"}})"
                    "\n");
    ASSERT_TRUE(isHeld(3)) << agent.held.size();
    agent.held[2](json("c"));
    EXPECT_EQ(connection.message()["result"], "c");
    EXPECT_EQ(connection.message(), "notification") << "the notification follows the response";

    connection.send(later + "\n");
    ASSERT_TRUE(isHeld(4)) << agent.held.size();
    server.reset();
    agent.held[3](json("too late"));
    EXPECT_TRUE(connection.isClosedByAgent());
}

TEST_F(LineProtocol, UnreadOutputOfAllClientsIsBounded) {
    listen({.totalUnsentBytes = 2'000'000});
    std::vector<SocketClient> unreading;
    for (int i = 0; i < 40; ++i) {
        unreading.push_back(client());
        unreading.back().send(R"({"jsonrpc":"2.0","id":1,"method":"large","params":{"bytes":1000000}})"
                              "\n");
        EXPECT_EQ(client().request(kEcho)["id"], 7);
    }
    int ended = 0;
    for (auto& each : unreading) ended += each.line() ? 0 : 1; // a dropped client does not get the whole line
    EXPECT_GE(ended, 35);
    EXPECT_LE(ended, 39) << "at least one client is served";
    // A client that reads gets even a response that exceeds the limit.
    auto reading = client();
    EXPECT_EQ(echoed(reading.request(R"({"jsonrpc":"2.0","id":1,"method":"large","params":{"bytes":5000000}})"))
                  .get<std::string>()
                  .size(),
              5'000'000u);
}

TEST_F(LineProtocol, ResponsesOfIncompleteBatchesCountAsUnread) {
    listen({.totalUnsentBytes = 3'000'000});
    const std::string batch = R"([{"jsonrpc":"2.0","id":1,"method":"large","params":{"bytes":900000}},)"
                              R"({"jsonrpc":"2.0","id":2,"method":"later"}])"
                              "\n";
    // The second round shows that the responses of the first round are no longer counted.
    for (int round = 0; round < 2; ++round) {
        agent.held.clear();
        std::vector<SocketClient> clients;
        for (std::size_t i = 0; i < 8; ++i) {
            clients.push_back(client());
            clients.back().send(batch);
            ASSERT_TRUE(waitUntil([this] { queue.runDue(); }, [&] { return agent.held.size() == i + 1; }));
        }
        for (std::size_t i = 0; i < 5; ++i) EXPECT_TRUE(clients[i].isClosedByAgent()) << i;
        for (const auto& respond : std::vector(agent.held)) respond(json("done"));
        for (std::size_t i = 5; i < 8; ++i) EXPECT_EQ(clients[i].message().size(), 2u) << i;
    }
}

TEST_F(LineProtocol, EndingDoesNotWaitForPendingRequests) {
    listen();
    std::string objects = R"({"jsonrpc":"2.0","id":1,"method":"echo","params":[{})";
    while (objects.size() < kLongestControlLine / 16) objects += ",{}";
    objects += "]}";
    // The test measures processor time, which does not depend on other programs.
    const auto timeOf = [](const auto& act) {
        const auto begun = std::clock();
        act();
        return std::clock() - begun;
    };
    auto first = client();
    const auto timeOfOneLine = timeOf([&] { first.request(objects); });
    std::vector<SocketClient> busy;
    for (int i = 0; i < 30; ++i) {
        busy.push_back(client());
        busy.back().send(objects + "\n");
    }
    EXPECT_LT(timeOf([&] { server.reset(); }), 8 * timeOfOneLine)
        << "the server finishes only the input that it is reading";
}

TEST_F(LineProtocol, AcceptsClientsAgainWhenDescriptorsAreFree) {
    listen();
    auto present = client();
    EXPECT_EQ(present.request(kEcho)["id"], 7);
    rlimit usual{};
    getrlimit(RLIMIT_NOFILE, &usual);
    SocketClient waiting(
        path(), [this] { queue.runDue(); },
        [&] {
            rlimit none = usual;
            const int lowestFree = dup(STDERR_FILENO);
            close(lowestFree);
            none.rlim_cur = static_cast<rlim_t>(lowestFree);
            ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
        });
    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    getrusage(RUSAGE_SELF, &after);
    const auto micros = [](const rusage& usage) {
        return usage.ru_utime.tv_usec + usage.ru_stime.tv_usec +
               1'000'000 * (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec);
    };
    EXPECT_LE(micros(after) - micros(before), 50'000) << "the server pauses before it retries";
    EXPECT_EQ(present.request(kEcho)["id"], 7);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
    EXPECT_EQ(waiting.request(kEcho)["id"], 7);
}

TEST_F(LineProtocol, ConnectionsEndWithTheServer) {
    listen();
    auto connection = client();
    EXPECT_EQ(connection.request(kEcho)["id"], 7);
    connection.send(std::string(kEcho) + "\n");
    ASSERT_TRUE(waitUntil([] {}, [this] { return queue.pendingCount() == 1; }));
    server.reset(); // the request is in the queue
    EXPECT_TRUE(connection.isClosedByAgent());
    EXPECT_EQ(agent.count, 1);
    EXPECT_FALSE(std::filesystem::exists(path()));
    EXPECT_THROW(client(), std::runtime_error);
}

TEST_F(LineProtocol, SurvivesRandomBytes) {
    listen();
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    for (int round = 0; round < 60; ++round) {
        auto connection = client();
        for (int i = 0; i < 40; ++i) {
            std::string line(kEcho);
            for (std::size_t changes = below(4); changes > 0; --changes) {
                const auto at = below(line.size());
                if (below(3) == 0) {
                    line.erase(at, below(8));
                } else if (below(2) == 0) {
                    line.insert(at, line.substr(below(line.size()), below(20)));
                } else {
                    line[at] = static_cast<char>(below(256));
                }
                if (line.empty()) line = "x";
            }
            connection.send(line + "\n");
        }
        connection.send(R"({"jsonrpc":"2.0","id":"last","method":"echo"})"
                        "\n");
        json reply;
        do {
            reply = connection.message();
            const json& one = reply.is_array() && !reply.empty() ? reply[0] : reply;
            ASSERT_TRUE(one.is_object() && one.contains("error") != one.contains("result")) << reply;
        } while (reply.is_array() || reply["id"] != "last");
    }
}

} // namespace kova
