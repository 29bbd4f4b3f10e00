// Generates the Swift source of the App Intents from the table of intents that all platforms use. Xcode extracts titles
// and phrases when it compiles the source, so they have to be literals. Each intent passes its URL to the application's
// delegate in the same process, since opening the URL through the system would bring KOVA to the front.
#include "commands/Intents.h"

#include <iostream>
#include <string>
#include <string_view>

namespace {

using namespace kova;

/// Escapes the text for a Swift string literal.
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

enum class ShortcutDisplay { phrasesOnly, titleAndSymbol };

void printShortcuts(ShortcutDisplay display) {
    for (const AppShortcut& shortcut : kAppShortcuts) {
        std::cout << "            AppShortcut(\n"
                  << "                intent: " << shortcut.intent.typeName << "(),\n"
                  << "                phrases: [\n";
        for (const TextAroundName& phrase : shortcut.phrases) {
            std::cout << "                    " << literal(phrase, "\\(.applicationName)") << ",\n";
        }
        std::cout << "                ]";
        if (display == ShortcutDisplay::titleAndSymbol) {
            std::cout << ",\n"
                      << "                shortTitle: " << literal(shortcut.shortTitle) << ",\n"
                      << "                systemImageName: " << literal(shortcut.symbol);
        }
        std::cout << "\n"
                  << "            )\n";
    }
}

/// Prints the one provider that a program may have. Shortcuts have short titles and symbols since macOS 14.
void printShortcutsProvider() {
    std::cout << "struct " << kAppShortcutsTypeName << ": AppShortcutsProvider {\n"
              << "    @AppShortcutsBuilder static var appShortcuts: [AppShortcut] {\n"
              << "        if #available(macOS 14.0, *) {\n";
    printShortcuts(ShortcutDisplay::titleAndSymbol);
    std::cout << "        } else {\n";
    printShortcuts(ShortcutDisplay::phrasesOnly);
    std::cout << "        }\n"
              << "    }\n"
              << "}\n";
}

} // namespace

int main() {
    std::cout << R"(// Generated from src/commands/Intents.h when the program is built. Make changes there.
import AppIntents
import AppKit

private struct CannotOpenURL: Error {}

@MainActor
private func openURL(_ text: String) throws {
    guard let url = URL(string: text), let delegate = NSApplication.shared.delegate else { throw CannotOpenURL() }
    delegate.application?(NSApplication.shared, open: [url])
}

/// Encodes every byte that is neither an ASCII letter, an ASCII digit nor one of "-._~".
private func percentEncoded(_ text: String) -> String {
    var unreserved = CharacterSet(charactersIn: "-._~")
    unreserved.insert(charactersIn: "a"..."z")
    unreserved.insert(charactersIn: "A"..."Z")
    unreserved.insert(charactersIn: "0"..."9")
    return text.addingPercentEncoding(withAllowedCharacters: unreserved) ?? ""
}

)";
    for (const Intent* intent : kIntents) printIntent(*intent);
    printShortcutsProvider();
    return std::cout.flush() ? 0 : 1;
}
