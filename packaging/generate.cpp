// Generates installed files from the program's own tables, so that they always agree with the program: the desktop
// entry from the intents, and the verbs and methods in the manual pages.
//
//   kova-generate desktop-entry
//   kova-generate manual TEMPLATE    replaces the lines .KOVA-VERBS and .KOVA-METHODS of the page by the tables
#include "cli/Verbs.h"
#include "commands/Intents.h"
#include "support/Version.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using namespace kova;

std::string replaced(std::string text, std::string_view what, std::string_view by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
        text.replace(at, what.size(), by);
    }
    return text;
}

/// Returns "arrange" for "kova://action/arrange".
std::string_view lastPart(std::string_view url) {
    return url.substr(url.rfind('/') + 1);
}

/// Escapes an argument without spaces or quotation marks for an Exec line.
std::string execWord(std::string_view word) {
    return replaced(std::string(word), "%", "%%");
}

std::string desktopEntry() {
    std::string actions;
    std::string groups;
    for (const AppShortcut& shortcut : kAppShortcuts) {
        const std::string id(lastPart(shortcut.intent.url));
        actions += id + ";";
        groups += "\n[Desktop Action " + id + "]\nName=" + std::string(shortcut.shortTitle) + "\nExec=kova open " +
                  execWord(shortcut.intent.url) + "\n";
    }
    const std::string scheme(kArrangeIntent.url.substr(0, kArrangeIntent.url.find(':')));
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.4\n"
           "Name=KOVA\n"
           "GenericName=Window Tiling\n"
           "Comment=" KOVA_DESCRIPTION "\n"
           "Exec=kova open %u\n"
           "TryExec=kova\n"
           "Icon=kova\n"
           "Terminal=false\n"
           "StartupNotify=false\n"
           "Categories=Utility;\n"
           "Keywords=windows;tiling;layout;workspace;\n"
           "MimeType=x-scheme-handler/" +
           scheme + ";\nActions=" + actions + "\n" + groups;
}

/// Escapes the text for the formatter of manual pages. A text must not begin with a period, which is
/// not escaped.
std::string forManual(std::string_view text) {
    std::string out = replaced(std::string(text), "\\", "\\e");
    out = replaced(std::move(out), "-", "\\-");
    out = replaced(std::move(out), "“", "\\(lq");
    out = replaced(std::move(out), "”", "\\(rq");
    out = replaced(std::move(out), "'", "\\(aq");
    return out;
}

/// Returns "Put every window into a tile." for "put every window into a tile".
std::string sentence(std::string_view summary) {
    std::string out = forManual(summary) + ".";
    if (out[0] >= 'a' && out[0] <= 'z') out[0] = static_cast<char>(out[0] - 'a' + 'A');
    return out;
}

std::string parameterForManual(const cli::Parameter& parameter) {
    std::string out;
    if (!parameter.optionName.empty()) out += "\\fB" + forManual(parameter.optionName) + "\\fR";
    if (!parameter.optionName.empty() && !parameter.value.empty()) out += " ";
    if (!parameter.value.empty()) out += "\\fI" + forManual(parameter.value) + "\\fR";
    return out;
}

std::string verbs() {
    std::string out;
    for (const cli::Verb& verb : cli::verbs()) {
        std::string usage = "\\fBkova " + forManual(verb.name) + "\\fR";
        std::string parameters;
        for (const cli::Parameter& parameter : verb.parameters) {
            const std::string text = parameterForManual(parameter);
            usage += parameter.isRequired ? " " + text : " [" + text + "]";
            parameters += ".TP\n" + text + "\n" + forManual(parameter.meaning) + "\n";
        }
        out += ".SS " + usage + "\n" + sentence(verb.summary) + "\n" + forManual(verb.description) + "\n" + parameters;
        out += ".PP\nExamples:\n.PP\n.RS 4\n.nf\n" + forManual(verb.examples) + "\n.fi\n.RE\n";
    }
    return out;
}

std::string methods() {
    std::string out;
    for (const cli::Verb& verb : cli::verbs()) {
        if (verb.method.empty()) continue; // the verb works without the agent
        out += ".TP\n\\fB" + forManual(verb.method) + "\\fR\n" + forManual(verb.summary) + " (\\fBkova " +
               forManual(verb.name) + "\\fR)\n";
    }
    return out;
}

std::string manual(const char* file) {
    std::ifstream stream(file);
    if (!stream) throw std::runtime_error(std::string("cannot read ") + file);
    std::string out;
    for (std::string line; std::getline(stream, line);) {
        if (line == ".KOVA-VERBS") {
            out += verbs();
        } else if (line == ".KOVA-METHODS") {
            out += methods();
        } else {
            out += replaced(line, "@VERSION@", KOVA_VERSION) + "\n";
        }
    }
    return out;
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc > 1 ? argv[1] : "";
    try {
        if (what == "desktop-entry" && argc == 2) {
            std::cout << desktopEntry();
        } else if (what == "manual" && argc == 3) {
            std::cout << manual(argv[2]);
        } else {
            std::cerr << "usage: kova-generate desktop-entry | manual TEMPLATE\n";
            return 2;
        }
    } catch (const std::exception& error) {
        std::cerr << "kova-generate: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
    return std::cout.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
