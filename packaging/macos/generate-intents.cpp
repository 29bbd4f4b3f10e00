// Writes the Swift source of the App Intents from the values that every platform offers, when the program is built. The
// system reads titles and phrases from the source as it is compiled, so they have to stand there as literals. Each
// intent only opens its URL.
#include "commands/Intents.h"

#include <iostream>
#include <string>
#include <string_view>

namespace {

using namespace kova;

/// As it stands between the quotes of a Swift literal.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char letter : text) {
        if (letter == '"' || letter == '\\') result += '\\';
        result += letter;
    }
    return result;
}

std::string literal(std::string_view text) {
    return "\"" + escaped(text) + "\"";
}

std::string literal(const TextAroundName& text, const std::string& interpolated) {
    return "\"" + escaped(text.before) + interpolated + escaped(text.after) + "\"";
}

void printIntent(const Intent& intent) {
    std::cout << "struct " << intent.typeName << ": AppIntent {\n"
              << "    static var title: LocalizedStringResource = " << literal(intent.title) << "\n\n";
    std::string url = literal(intent.url), dialog = literal(intent.dialog.before);
    if (intent.parameter) {
        const std::string name(intent.parameter->name);
        std::cout << "    @Parameter(title: " << literal(intent.parameter->title) << ")\n"
                  << "    var " << name << ": String\n\n";
        url += " + percentEncoded(" + name + ")";
        dialog = literal(intent.dialog, "\\(" + name + ")");
    }
    std::cout << "    @MainActor\n"
              << "    func perform() async throws -> some IntentResult & ProvidesDialog {\n"
              << "        try openURL(" << url << ")\n"
              << "        return .result(dialog: " << dialog << ")\n"
              << "    }\n"
              << "}\n\n";
}

void printShortcuts() {
    std::cout << "struct " << kAppShortcutsTypeName << ": AppShortcutsProvider {\n"
              << "    @AppShortcutsBuilder static var appShortcuts: [AppShortcut] {\n";
    for (const AppShortcut& shortcut : kAppShortcuts) {
        std::cout << "        AppShortcut(\n"
                  << "            intent: " << shortcut.intent.typeName << "(),\n"
                  << "            phrases: [\n";
        for (const TextAroundName& phrase : shortcut.phrases) {
            std::cout << "                " << literal(phrase, "\\(.applicationName)") << ",\n";
        }
        std::cout << "            ],\n"
                  << "            shortTitle: " << literal(shortcut.shortTitle) << ",\n"
                  << "            systemImageName: " << literal(shortcut.symbol) << "\n"
                  << "        )\n";
    }
    std::cout << "    }\n"
              << "}\n";
}

} // namespace

int main() {
    std::cout << R"(// Made when the program is built; changes belong into the intents that it is made of.
import AppIntents
import AppKit

private struct CannotOpenURL: Error {}

@MainActor
private func openURL(_ text: String) throws {
    guard let url = URL(string: text), NSWorkspace.shared.open(url) else { throw CannotOpenURL() }
}

/// Every byte that is neither a letter, a digit nor one of "-._~".
private func percentEncoded(_ text: String) -> String {
    var unreserved = CharacterSet(charactersIn: "-._~")
    unreserved.insert(charactersIn: "a"..."z")
    unreserved.insert(charactersIn: "A"..."Z")
    unreserved.insert(charactersIn: "0"..."9")
    return text.addingPercentEncoding(withAllowedCharacters: unreserved) ?? ""
}

)";
    for (const Intent* intent : kIntents) printIntent(*intent);
    printShortcuts();
    return std::cout.flush() ? 0 : 1;
}
