#include "persistence/WorkspaceSession.h"

#include "support/JsonDecoding.h"

namespace kova {

namespace {

using nlohmann::json;

json flatRect(const CGRect& rect) {
    return json::array({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
}

std::vector<double> numbers(const JsonCursor& cursor, std::size_t count) {
    std::vector<double> out;
    for (const auto& element : cursor.elements()) out.push_back(element.number());
    if (out.size() != count) cursor.fail("expected " + std::to_string(count) + " numbers");
    return out;
}

CGRect rect(const JsonCursor& cursor) {
    const auto n = numbers(cursor, 4);
    const CGRect decoded = makeRect(n[0], n[1], n[2], n[3]);
    if (!isFinite(decoded)) cursor.fail("expected finite numbers");
    return decoded;
}

json encode(const WorkspaceSessionWindow& window) {
    json out = {{"id", window.id}, {"process", window.processIdentifier}, {"title", window.title}};
    if (window.processStart) out["processStart"] = *window.processStart;
    if (window.bundleIdentifier) out["bundleIdentifier"] = *window.bundleIdentifier;
    if (window.frame && isFinite(*window.frame)) out["frame"] = flatRect(*window.frame);
    if (const auto& minimum = window.observedMinimumSize; minimum && isFinite(*minimum)) {
        out["observedMinimumSize"] = json::array({minimum->width, minimum->height});
    }
    if (window.isHiddenInStack) out["isPutAway"] = true;
    if (window.isSurplus) out["isSurplus"] = true;
    return out;
}

WorkspaceSessionWindow decodeWindow(const JsonCursor& cursor) {
    WorkspaceSessionWindow window;
    window.id = WindowID(cursor.required("id").string());
    window.processIdentifier = static_cast<pid_t>(cursor.required("process").integer());
    window.title = cursor.required("title").string();
    if (const auto start = cursor.optional("processStart")) window.processStart = start->string();
    if (const auto bundle = cursor.optional("bundleIdentifier")) window.bundleIdentifier = BundleID(bundle->string());
    if (const auto frame = cursor.optional("frame")) window.frame = rect(*frame);
    if (const auto minimum = cursor.optional("observedMinimumSize")) {
        const auto n = numbers(*minimum, 2);
        window.observedMinimumSize = CGSize{n[0], n[1]};
    }
    if (const auto putAway = cursor.optional("isPutAway")) window.isHiddenInStack = putAway->boolean();
    if (const auto surplus = cursor.optional("isSurplus")) window.isSurplus = surplus->boolean();
    return window;
}

json encode(const WorkspaceSessionTiles& tiles) {
    json assigned = json::object(), stacks = json::object(), anchors = json::object();
    for (const auto& [target, window] : tiles.assignedWindowIDs) assigned[target.text()] = window;
    for (const auto& [target, stack] : tiles.stackWindowIDs) stacks[target.text()] = stack;
    for (const auto& [window, target] : tiles.anchors) anchors[window.text()] = target;
    return {{"assigned", std::move(assigned)}, {"stacks", std::move(stacks)}, {"anchors", std::move(anchors)}};
}

WorkspaceSessionTiles decodeTiles(const JsonCursor& cursor) {
    WorkspaceSessionTiles tiles;
    for (const auto& [target, window] : cursor.required("assigned").members()) {
        tiles.assignedWindowIDs[TileTarget::from(target)] = WindowID(window.string());
    }
    for (const auto& [window, target] : cursor.required("anchors").members()) {
        tiles.anchors[WindowID(window)] = TileTarget::from(target.string());
    }
    for (const auto& [target, stack] : cursor.required("stacks").members()) {
        for (const auto& window : stack.elements()) {
            tiles.stackWindowIDs[TileTarget::from(target)].emplace_back(window.string());
        }
    }
    return tiles;
}

WorkspaceSessionZoom decodeZoom(const JsonCursor& cursor) {
    WorkspaceSessionZoom zoom{.displayID = DisplayID(cursor.required("displayID").string()),
                              .anchor = TileTarget::from(cursor.required("anchorTargetID").string()),
                              .windowID = WindowID(cursor.required("windowID").string())};
    if (const auto frame = cursor.optional("frameBefore")) zoom.frameBefore = rect(*frame);
    return zoom;
}

} // namespace

std::string encodeWorkspaceSession(const WorkspaceSession& session) {
    json out = {{"tiles", encode(session.tiles)},
                {"windows", json::array()},
                {"awayDisplays", json::object()},
                {"handledRuleWindowIDs", session.handledRuleWindowIDs}};
    for (const auto& window : session.windows) out["windows"].push_back(encode(window));
    for (const auto& [display, tiles] : session.disconnectedDisplays)
        out["awayDisplays"][display.text()] = encode(tiles);
    for (const auto& space : session.otherSpaces) {
        json entry = {{"tiles", encode(space.tiles)}};
        if (space.number) entry["number"] = *space.number;
        out["otherSpaces"].push_back(std::move(entry));
    }
    if (session.zoom) {
        out["zoom"] = {{"displayID", session.zoom->displayID},
                       {"anchorTargetID", session.zoom->anchor},
                       {"windowID", session.zoom->windowID}};
        if (session.zoom->frameBefore) out["zoom"]["frameBefore"] = flatRect(*session.zoom->frameBefore);
    }
    if (!session.floatingWindowIDs.empty()) out["floatingWindowIDs"] = session.floatingWindowIDs;
    // A title may contain any bytes.
    return out.dump(-1, ' ', false, json::error_handler_t::replace);
}

Decoded<WorkspaceSession> decodeWorkspaceSession(std::string_view text) {
    return decodeJson(text, [](const JsonCursor& cursor) {
        WorkspaceSession session;
        session.tiles = decodeTiles(cursor.required("tiles"));
        for (const auto& window : cursor.required("windows").elements())
            session.windows.push_back(decodeWindow(window));
        for (const auto& [display, tiles] : cursor.required("awayDisplays").members()) {
            session.disconnectedDisplays[DisplayID(display)] = decodeTiles(tiles);
        }
        if (const auto spaces = cursor.optional("otherSpaces")) {
            for (const auto& space : spaces->elements()) {
                const auto number = space.optional("number");
                session.otherSpaces.push_back(
                    {number ? std::optional(static_cast<std::uint64_t>(number->integer())) : std::nullopt,
                     decodeTiles(space.required("tiles"))});
            }
        }
        for (const auto& id : cursor.required("handledRuleWindowIDs").elements()) {
            session.handledRuleWindowIDs.emplace(id.string());
        }
        if (const auto floating = cursor.optional("floatingWindowIDs")) {
            for (const auto& id : floating->elements()) session.floatingWindowIDs.emplace(id.string());
        }
        if (const auto zoom = cursor.optional("zoom")) session.zoom = decodeZoom(*zoom);
        return session;
    });
}

} // namespace kova
