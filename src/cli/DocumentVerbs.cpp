#include "cli/DocumentVerbs.h"

#include "cli/DocumentFile.h"
#include "cli/Streams.h"
#include "control/client/ControlCodes.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>

namespace kova::cli {

namespace {

using nlohmann::json;

constexpr std::string_view kProposedName = "KOVA-Workspace.json";
constexpr std::chrono::seconds kPatience{60}; // with a document as large as can be
/// A piece of a document in one line: a byte of it takes six at most (“\u0000”).
constexpr std::size_t kLargestPiece = kLongestControlLine / 8;

/// The text up to the first place, not beyond the limit, where no character is cut.
std::string_view firstPiece(std::string_view text) {
    constexpr std::size_t kLongestCharacter = 4;
    if (text.size() <= kLargestPiece) return text;
    std::size_t end = kLargestPiece;
    const auto isInside = [&] { return (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U; };
    while (end > kLargestPiece - kLongestCharacter && isInside()) --end;
    return text.substr(0, end);
}

/// What is not UTF-8 could not be told to the agent as it is.
bool isUtf8(std::string_view text) {
    try {
        for (; !text.empty(); text.remove_prefix(firstPiece(text).size())) (void)json(firstPiece(text)).dump();
        return true;
    } catch (const json::type_error&) {
        return false;
    }
}

std::variant<json, Trouble> sendDocument(Agent& agent, std::string_view method, std::string_view text) {
    while (true) {
        const std::string_view piece = firstPiece(text);
        text.remove_prefix(piece.size());
        auto answer = agent.ask(method, {{"text", piece}, {"more", !text.empty()}}, kPatience);
        if (text.empty() || std::holds_alternative<Trouble>(answer)) return answer;
    }
}

} // namespace

ExitCode runExport(const Verb& verb, const Arguments& arguments) {
    auto connected = Agent::connect();
    if (const auto* trouble = std::get_if<Trouble>(&connected)) return end(*trouble);
    auto answer = std::get<Agent>(connected).ask(verb.method, json::object(), kPatience);
    if (const auto* trouble = std::get_if<Trouble>(&answer)) return end(*trouble);
    json& result = std::get<json>(answer);
    if (arguments.file == kStandardStream) return print(result.at("text").get_ref<const std::string&>());
    const std::string path = documentPath(arguments.file.value_or("."), kProposedName);
    if (!arguments.force && wouldOverwrite(path)) {
        return end({ExitCode::refused, "Export failed: “" + path + "” is there already; --force overwrites it"});
    }
    if (const auto problem = replaceFile(path, result.at("text").get_ref<const std::string&>())) {
        return end({ExitCode::refused, "Export failed: " + problem->message});
    }
    result.erase("text");
    result["file"] = path;
    return print(arguments.json ? asText(result, 2) : verb.print(result, arguments));
}

ExitCode runImport(const Verb& verb, const Arguments& arguments) {
    auto connected = Agent::connect(); // first: without an agent nothing is wrong with the file
    if (const auto* trouble = std::get_if<Trouble>(&connected)) return end(*trouble);
    const std::string path = arguments.file.value_or("");
    const auto read = readFile(path, kLargestDocument);
    if (const auto* problem = std::get_if<FileProblem>(&read)) {
        return end({ExitCode::refused, "Import failed: " + problem->message});
    }
    const auto& text = std::get<std::string>(read);
    if (!isUtf8(text)) return end({ExitCode::refused, "Import failed: “" + path + "” is not UTF-8 text"});
    auto answer = sendDocument(std::get<Agent>(connected), verb.method, text);
    if (const auto* trouble = std::get_if<Trouble>(&answer)) return end(*trouble);
    const json& result = std::get<json>(answer);
    return print(arguments.json ? asText(result, 2) : verb.print(result, arguments));
}

} // namespace kova::cli
