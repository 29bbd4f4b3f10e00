#include "app/DocumentExchange.h"

namespace kova {

void DocumentExchange::exportDocument() {
    const auto exported = workspace_.exportWorkspaceDocument();
    if (const auto* error = std::get_if<DecodingError>(&exported)) return fail("Export failed: ", error->what());
    panels_.saveDocument("KOVA-Workspace.json", std::get<std::string>(exported),
                         lifetime_.guard([this](const std::optional<FileProblem>& problem) {
                             if (problem) fail("Export failed: ", problem->message);
                         }));
}

void DocumentExchange::importDocument() {
    panels_.openDocument(lifetime_.guard([this](const std::variant<std::string, FileProblem>& file) {
        if (const auto* problem = std::get_if<FileProblem>(&file)) return fail("Import failed: ", problem->message);
        const auto imported = workspace_.perform(action::ImportDocument{std::get<std::string>(file)});
        if (!imported) fail("Import failed: ", *imported.message());
    }));
}

void DocumentExchange::fail(const std::string& what, const std::string& why) {
    alerts_.inform({.title = "KOVA", .text = what + why, .confirmButton = "OK", .cancelButton = {}});
}

} // namespace kova
