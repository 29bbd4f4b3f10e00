#include "cli/DocumentVerbs.h"

#include "cli/DocumentFile.h"
#include "cli/PlainVerbs.h"
#include "cli/Streams.h"
#include "control/client/ControlCodes.h"
#include "support/Quoted.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>

namespace kova::cli {

namespace {

using nlohmann::json;

constexpr std::string_view kProposedName = "KOVA-Workspace.json";
constexpr std::chrono::seconds kDocumentTimeout{60}; // for the largest document
/// The longest piece of a document in one request, in bytes. A byte of the document takes at most six bytes in JSON
/// (“\u0000”).
constexpr std::size_t kLargestPiece = kLongestControlLine / 8;

/// The longest beginning of the text, up to `kLargestPiece`, that does not end inside a character.
std::string_view firstPiece(std::string_view text) {
    constexpr std::size_t kLongestCharacter = 4;
    if (text.size() <= kLargestPiece) return text;
    std::size_t end = kLargestPiece;
    const auto isInside = [&] { return (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U; };
    while (end > kLargestPiece - kLongestCharacter && isInside()) --end;
    return text.substr(0, end);
}

/// Only UTF-8 text can be sent to the agent unchanged.
bool isUtf8(std::string_view text) {
    try {
        for (; !text.empty(); text.remove_prefix(firstPiece(text).size())) (void)json(firstPiece(text)).dump();
        return true;
    } catch (const json::type_error&) {
        return false;
    }
}

CommandResult<json> sendDocument(Agent& agent, std::string_view method, std::string_view text, bool isDryRun) {
    while (true) {
        const std::string_view piece = firstPiece(text);
        text.remove_prefix(piece.size());
        auto answer =
            agent.ask(method, {{"text", piece}, {"more", !text.empty()}, {"dryRun", isDryRun}}, kDocumentTimeout);
        if (text.empty() || !answer) return answer;
    }
}

} // namespace

ExitCode runExport(const Verb& verb, const Arguments& arguments) {
    auto agent = Agent::connect();
    if (!agent) return fail(agent.error());
    auto result = agent->ask(verb.method, json::object(), kDocumentTimeout);
    if (!result) return fail(result.error());
    const auto& document = result->at("text").get_ref<const std::string&>();
    const std::string given = arguments.text("file", ".");
    if (given == kStandardStream) return print(document);
    const std::string path = documentPath(given, kProposedName);
    if (!arguments.has("force") && wouldOverwrite(path)) {
        return fail({ExitCode::refused, "Export failed: " + quoted(path) + " is there already; --force overwrites it"});
    }
    if (const auto problem = replaceFile(path, document)) {
        return fail({ExitCode::refused, "Export failed: " + problem->message});
    }
    result->erase("text");
    (*result)["file"] = path;
    return printAnswer(verb, arguments, *result);
}

ExitCode runImport(const Verb& verb, const Arguments& arguments) {
    auto agent = Agent::connect(); // before the file is read: a missing agent is reported first
    if (!agent) return fail(agent.error());
    const std::string path = arguments.text("file");
    const auto text = readFile(path, kLargestDocument);
    if (!text) return fail({ExitCode::refused, "Import failed: " + text.error().message});
    if (!isUtf8(*text)) return fail({ExitCode::refused, "Import failed: " + quoted(path) + " is not UTF-8 text"});
    const auto result = sendDocument(*agent, verb.method, *text, arguments.has("dryRun"));
    return result ? printAnswer(verb, arguments, *result) : fail(result.error());
}

} // namespace kova::cli
