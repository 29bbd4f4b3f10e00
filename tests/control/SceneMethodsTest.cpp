// Scenes and rules over the agent's socket, and the export and import of their document.
#include "control/DocumentTransfer.h"
#include "tests/control/MethodCalls.h"

namespace kova {

namespace {

using nlohmann::json;

class SceneMethods : public MethodCalls {
  protected:
    std::string ruleNames() {
        std::string names;
        const json list = result("rule.list");
        for (const json& rule : list["rules"]) names += (names.empty() ? "" : ", ") + rule["name"].get<std::string>();
        return names;
    }
};

} // namespace

TEST_F(SceneMethods, ASceneIsFoundByItsWholeNameOrItsId) {
    desk.arrange();
    const json first = result("scene.capture", {{"name", "desk"}})["scene"];
    const json second = result("scene.capture", {{"name", "Desk"}})["scene"];
    const auto shown = [&](const std::string& name) { return result("scene.show", {{"scene", name}})["scene"]["id"]; };
    EXPECT_EQ(shown("Desk"), second["id"]);
    EXPECT_EQ(shown("DESK"), first["id"]) << "the first scene whose name differs only in case";
    EXPECT_EQ(shown(second["id"]), second["id"]);
    EXPECT_TRUE(
        refusal("scene.delete", {{"scene", "Des"}}).starts_with("There is no scene “Des”. Did you mean “desk”?"));

    EXPECT_EQ(result("scene.rename", {{"scene", "Desk"}, {"newName", " Work "}})["scene"]["name"], "Work");
    EXPECT_EQ(refusal("scene.rename", {{"scene", "Work"}, {"newName", "  "}}), "A scene needs a name");
    EXPECT_EQ(result("scene.delete", {{"scene", "work"}})["message"], "Scene “Work” deleted");
    const json left = result("scene.list")["scenes"];
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0]["id"], first["id"]);
    EXPECT_EQ(left[0]["isActive"], false);
}

TEST_F(SceneMethods, DeletedScenesCanBeRestoredToTheirPlacesInTheList) {
    for (const char* name : {"One", "Two", "Three"}) result("scene.capture", {{"name", name}});
    const auto names = [&] {
        std::string all;
        const json list = result("scene.list");
        for (const json& scene : list["scenes"]) all += scene["name"].get<std::string>() + " ";
        return all;
    };
    const std::string text = result("export")["text"];
    for (const char* name : {"Two", "One"}) result("scene.delete", {{"scene", name}});
    EXPECT_EQ(names(), "Three ");
    EXPECT_EQ(result("scene.undelete")["message"], "Scene “One” restored to the list");
    EXPECT_EQ(result("scene.undelete")["scene"]["name"], "Two");
    EXPECT_EQ(names(), "One Two Three ");
    EXPECT_EQ(refusal("scene.undelete"), "No scene was deleted since the agent started");

    result("scene.delete", {{"scene", "Three"}});
    result("import", {{"text", text}});
    EXPECT_EQ(refusal("scene.undelete"), "No scene was deleted since the agent started")
        << "the import has restored the scene";
    EXPECT_EQ(names(), "One Two Three ");
}

TEST_F(SceneMethods, AClientThatWaitsGetsTheFinalReportWhenTheSceneIsOpen) {
    desk.arrange();
    result("scene.capture", {{"name", "Work"}});
    desk.desktop.quit("Notes");
    desk.settle();
    const auto open = [&](SocketClient& by) {
        return call(by, "scene.open", {{"scene", "Work"}, {"wait", true}})["result"]["report"]["state"];
    };
    EXPECT_EQ(open(connection), "waiting");
    const auto finalReport = [&](SocketClient& listener) {
        const json message = listener.message();
        EXPECT_EQ(message["method"], "sceneOpened") << message;
        EXPECT_EQ(schemaViolation(schema, "notification:sceneOpened", message["params"]), "");
        return message["params"]["report"];
    };
    auto other = client();
    EXPECT_EQ(open(other), "waiting");
    EXPECT_EQ(finalReport(connection)["state"], "abandoned");
    desk.advance(Seconds(26));
    const json report = finalReport(other);
    EXPECT_EQ(report["state"], "finished");
    EXPECT_EQ(report["adopted"].size(), 1u);
    EXPECT_EQ(report["missing"], json::array({"Notes “Notes”"}));
}

TEST_F(SceneMethods, DifferencesFromASceneAreListedAndOpeningTheSceneRestoresIt) {
    desk.arrange();
    const std::string before = desk.tiles();
    result("scene.capture", {{"name", "Work"}});
    const json shown = result("scene.show", {{"scene", "Work"}});
    EXPECT_EQ(shown["displays"][0]["layout"], "jarvis.dual-split");
    EXPECT_EQ(shown["placements"][0]["slot"], "focus-main");
    const json tiles = shown["displays"][0]["tiles"];
    ASSERT_EQ(tiles.size(), 2u);
    EXPECT_EQ(tiles[1]["slot"], "secondary-1");
    EXPECT_NEAR(tiles[1]["frame"]["x"].get<double>(), 0.5, 0.01);
    EXPECT_EQ(result("scene.diff", {{"scene", "Work"}})["differences"], json::array());
    result("layout.select", {{"layout", "jarvis.quad-grid"}});
    desk.settle();
    EXPECT_EQ(result("scene.diff", {{"scene", "Work"}})["differences"][0]["now"], "Quad Grid (2×2)");
    const json opened = result("scene.open", {{"scene", "work"}});
    EXPECT_EQ(opened["message"], "Scene “Work” restored");
    EXPECT_EQ(opened["awaited"], 0);
    EXPECT_EQ(opened["canUndo"], true);
    desk.settle();
    EXPECT_EQ(desk.tiles(), before);

    desk.desktop.setTrusted(false);
    desk.settle();
    for (const char* method : {"scene.open", "scene.diff"}) {
        EXPECT_EQ(call(connection, method, {{"scene", "Work"}})["error"]["code"], controlCode::noPermission);
    }
}

TEST_F(SceneMethods, TheOverlaysMessageNamesTheMethodThatUndoesADeletion) {
    const auto undoOfMessage = [&] {
        runAgentOnce();
        auto drawing = client(); // a new client has no notifications to read first
        const json state = call(drawing, "subscribe", {{"topic", "overlay"}})["result"]["state"];
        EXPECT_EQ(schemaViolation(schema, "overlay:message", state["message"]), "");
        return state["message"]["undo"];
    };
    desk.arrange();
    result("scene.capture", {{"name", "Work"}});
    result("scene.delete", {{"scene", "Work"}});
    EXPECT_EQ(undoOfMessage(), "scene.undelete");
    result(undoOfMessage());
    EXPECT_EQ(result("scene.list")["scenes"].size(), 1u);
    EXPECT_EQ(undoOfMessage(), json(nullptr)) << "“undo” would undo the earlier arrangement";
    result("arrange");
    EXPECT_EQ(undoOfMessage(), "undo");
}

TEST_F(SceneMethods, AnImportedSceneWithTheLargestDisplayIndexCanBeShown) {
    desk.arrange();
    result("scene.capture", {{"name", "Work"}});
    json file = json::parse(std::get<std::string>(desk.controller().exportWorkspaceDocument()));
    json& scene = file["scenes"][0];
    scene["id"] = "3F2504E0-4F89-41D3-9A0C-0305E82C3301";
    scene["name"] = "Far";
    scene["displays"][0]["ordinal"] = INT64_MAX;
    scene["placements"][0]["displayOrdinal"] = INT64_MAX;
    result("import", {{"text", file.dump()}});
    const json shown = result("scene.show", {{"scene", "Far"}});
    EXPECT_EQ(shown["displays"][0]["number"], INT64_MAX);
    EXPECT_EQ(shown["placements"][0]["display"], INT64_MAX);
}

TEST_F(SceneMethods, RulesAreAddedOrderedAndTested) {
    const auto add = [&](json parameters) { return result("rule.add", std::move(parameters)); };
    const json mail = add({{"application", "mail"}, {"title", "inbox"}, {"disposition", "tile"}, {"slot", "2"}});
    EXPECT_EQ(mail["rule"]["slot"], "secondary-1") << "the second tile of the layout in force";
    EXPECT_EQ(mail["isOn"], false);
    EXPECT_EQ(add({{"focused", true}, {"disposition", "float"}, {"title", " build "}})["rule"]["title"], "build");
    EXPECT_EQ(
        add({{"application", "org.example.Maps"}, {"disposition", "tile"}, {"slot", "secondary-3"}})["rule"]["slot"],
        "secondary-3")
        << "a slot of a layout that is not in force";
    EXPECT_EQ(ruleNames(), "Mail → secondary-1, Terminal floats, Maps → secondary-3");

    EXPECT_EQ(add({{"window", "inbox"}, {"disposition", "ignore"}})["message"], "Rule added for Mail");
    const json rules = result("rule.list")["rules"];
    EXPECT_EQ(rules[0]["windows"].size(), 1u);
    EXPECT_EQ(rules[0]["windows"][0]["application"], "Mail");
    EXPECT_EQ(rules[0]["windows"][0]["decides"], true);
    EXPECT_EQ(rules[1]["windows"], json::array()) << "the title does not match";
    EXPECT_EQ(rules[3]["windows"][0]["decides"], false) << "the first rule decides";
    result("rule.delete", {{"rule", "4"}});

    const json ruleTest = result("rule.test", {{"window", "mail"}});
    EXPECT_EQ(ruleTest["rule"]["id"], mail["rule"]["id"]);
    EXPECT_EQ(ruleTest["reasons"][1]["verdict"], "notConsulted");
    result("rule.disable", {{"rule", "1"}});
    EXPECT_EQ(result("rule.test", {{"window", "mail"}})["reasons"][0]["verdict"], "disabled");
    EXPECT_EQ(result("rule.enable", {{"rule", "mail → secondary-1"}})["rule"]["isEnabled"], true);

    const json changed = result("rule.change", {{"rule", "terminal"}, {"disposition", "tile"}, {"slot", "1"}})["rule"];
    EXPECT_EQ(changed["slot"], "focus-main");
    EXPECT_EQ(changed["title"], "build") << "members that the request does not name are unchanged";
    const json withoutTitle = result("rule.change", {{"rule", "2"}, {"title", " "}})["rule"];
    EXPECT_TRUE(withoutTitle["title"].is_null());
    EXPECT_EQ(withoutTitle["slot"], "focus-main");

    EXPECT_EQ(result("rule.move", {{"rule", "maps"}, {"to", 1}})["rule"]["number"], 1);
    EXPECT_EQ(result("rule.move", {{"rule", "2"}, {"to", 900}})["rule"]["number"], 3);
    EXPECT_EQ(ruleNames(), "Maps → secondary-3, Terminal floats, Mail → secondary-1");
    EXPECT_EQ(result("rules.on")["isOn"], true);
    desk.settle();
    EXPECT_NE(desk.tiles().find("| Mail "), std::string::npos) << desk.tiles();
    EXPECT_EQ(result("rules.off")["isOn"], false);
    EXPECT_EQ(result("rule.delete", {{"rule", "terminal"}})["rules"], 2);
    EXPECT_EQ(ruleNames(), "Maps → secondary-3, Mail → secondary-1");
}

TEST_F(SceneMethods, AnInvalidRuleIsNotAdded) {
    using Parameters = json::object_t;
    const std::vector<Parameters> cases = {
        {{"disposition", "float"}},
        {{"application", "mail"}, {"focused", true}, {"disposition", "float"}},
        {{"application", "mail"}, {"window", "mail"}, {"disposition", "float"}},
        {{"application", "mail"}, {"disposition", "tile"}},
        {{"application", "mail"}, {"disposition", "float"}, {"slot", "1"}},
        {{"application", "mail"}, {"disposition", "sink"}},
    };
    for (const auto& parameters : cases) {
        EXPECT_EQ(call(connection, "rule.add", parameters)["error"]["code"], controlCode::invalidParameters)
            << json(parameters);
    }
    for (const auto& parameters :
         {Parameters{{"rule", "1"}}, Parameters{{"rule", "1"}, {"title", "x"}, {"slot", "1"}}}) {
        EXPECT_EQ(call(connection, "rule.change", parameters)["error"]["code"], controlCode::invalidParameters)
            << json(parameters);
    }
    EXPECT_EQ(call(connection, "rule.move", {{"rule", "1"}, {"to", 0}})["error"]["code"],
              controlCode::invalidParameters);
    EXPECT_NE(refusal("rule.add", {{"application", "solitaire"}, {"disposition", "float"}}).find("Mail"),
              std::string::npos);
    EXPECT_NE(refusal("rule.add", {{"application", "mail"}, {"disposition", "tile"}, {"slot", "attic"}}).find("1  "),
              std::string::npos);
    EXPECT_EQ(refusal("rule.enable", {{"rule", "1"}}), "There is no rule “1”; there is no rule at all");
    EXPECT_EQ(ruleNames(), "");
}

TEST_F(SceneMethods, TheDocumentIsTransferredInPieces) {
    desk.arrange();
    result("scene.capture", {{"name", "Wörk"}});
    result("rule.add", {{"application", "mail"}, {"disposition", "ignore"}});
    const std::string text = result("export")["text"];
    result("scene.delete", {{"scene", "Wörk"}});
    result("rule.delete", {{"rule", "1"}});

    const json preview = result("import", {{"text", text}, {"dryRun", true}});
    EXPECT_EQ(preview["message"], "The file would add 1 scene and 1 rule");
    EXPECT_EQ(preview["added"], json({{"scenes", {"Wörk"}}, {"rules", {"Mail ignored"}}}));
    EXPECT_EQ(result("scene.list")["scenes"], json::array());

    SocketClient other = client();
    EXPECT_EQ(call(other, "import", {{"text", "{\"version\""}, {"more", true}})["result"]["scenes"], nullptr);
    EXPECT_EQ(result("import", {{"text", text.substr(0, 100)}, {"more", true}})["message"], nullptr);
    const json imported = result("import", {{"text", text.substr(100)}});
    EXPECT_EQ(imported["message"], "Imported 1 scenes and 1 rules");
    EXPECT_EQ(imported["rules"], 1);
    EXPECT_EQ(result("export")["text"].get<std::string>().size() + std::string("  \"activeSceneID\": \"\",\n").size() +
                  36,
              text.size())
        << "everything was restored except which scene is active";
    const json again = result("import", {{"text", text}});
    EXPECT_EQ(again["scenes"], 1) << "existing scenes are counted";
    EXPECT_EQ(again["added"]["scenes"], json::array());
    EXPECT_EQ(result("scene.list")["scenes"].size(), 1u);

    // The upload of the other client continues, and fails because of its own text.
    EXPECT_EQ(call(other, "import", {{"text", ": 1, \"scenes\": [{}], \"rules\": []}"}})["error"]["message"],
              "Import failed: scenes[0].id: is missing");
    EXPECT_EQ(result("scene.list")["scenes"].size(), 1u);
}

TEST(DocumentTransfer, LimitsTheSizeAndTheAgeOfUploads) {
    struct Peer final : ControlPeer {
        void send(const std::string&) override {}
        bool isConnected() const override { return hasConnection; }
        void whenDisconnected(std::function<void()>) override {}
        bool hasConnection = true;
    };
    Scenario desk;
    desk.start();
    DocumentTransfer transfer(desk.controller(), desk.desktop.queue());
    const auto send = [&](const std::shared_ptr<Peer>& by, const std::string& text, bool more) -> std::string {
        const json parameters{{"text", text}, {"more", more}};
        const auto reply = transfer.importDocument(JsonCursor(parameters, ""), by);
        if (!reply) return reply.error().message;
        return (*reply)["scenes"].dump();
    };
    const auto one = std::make_shared<Peer>(), other = std::make_shared<Peer>();
    const std::string half(kLargestDocument / 2, ' ');
    const std::string document = R"({"version": 1, "scenes": [], "rules": []})";
    EXPECT_EQ(send(one, half, true), "null");
    EXPECT_EQ(send(one, half, true), "null");
    EXPECT_EQ(send(one, document, false), "Import failed: larger than 64 MiB");
    EXPECT_EQ(send(one, half, true), "null") << "a new upload begins";
    EXPECT_EQ(send(other, half + " ", true), "Import failed: too much is being imported at once");
    one->hasConnection = false;
    EXPECT_EQ(send(other, half, true), "null");
    EXPECT_EQ(send(other, half.substr(document.size()) + document, false), "0");

    EXPECT_EQ(send(other, "{", true), "null");
    desk.advance(DocumentTransfer::kUploadTimeout + Seconds(2));
    EXPECT_EQ(send(other, document, false), "0") << "the former upload has timed out";
}

} // namespace kova
