#include "app/DocumentExchange.h"
#include "persistence/MemoryPreferencesStore.h"
#include "platform/simulated/SimulatedDesktop.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

/// Simulated panels: the user always picks the same file.
class OneFile final : public DocumentPanelServicing {
  public:
    void saveDocument(const std::string& proposedName, std::string json,
                      std::function<void(const std::optional<FileProblem>&)> completion) override {
        name = proposedName;
        if (!problem) contents = std::move(json);
        completion(problem);
    }
    void openDocument(std::function<void(const std::variant<std::string, FileProblem>&)> completion) override {
        if (problem) {
            completion(*problem);
        } else {
            completion(contents);
        }
    }

    std::string name, contents;
    std::optional<FileProblem> problem;
};

TEST(DocumentExchange, ExportsAndImportsScenesAndReportsFailures) {
    SimulatedDesktop desktop;
    desktop.addDisplay({.name = "A", .size = {1920, 1080}});
    const auto workspaceOn = [&](PreferencesStore& preferences) {
        return std::make_unique<WorkspaceController>(WorkspaceServices{desktop, desktop, desktop, desktop, desktop,
                                                                       preferences, desktop.queue(),
                                                                       desktop.pollingQueue(), desktop});
    };
    MemoryPreferencesStore mine, theirs;
    OneFile file;
    const auto shown = [&] {
        const auto alerts = desktop.takeAlerts();
        return alerts.empty() ? std::string("nothing") : alerts.front().text;
    };

    const auto exporting = workspaceOn(mine);
    exporting->perform(action::CaptureScene{"Work"});
    DocumentExchange(*exporting, file, desktop).exportDocument();
    EXPECT_EQ(file.name, "KOVA-Workspace.json");
    const auto importing = workspaceOn(theirs);
    DocumentExchange exchange(*importing, file, desktop);
    exchange.importDocument();
    EXPECT_EQ(*importing->state().scenes, *exporting->state().scenes);
    EXPECT_EQ(shown(), "nothing");

    file.contents = "{}";
    exchange.importDocument();
    EXPECT_TRUE(shown().starts_with("Import failed: ")) << "an object without scenes is rejected";
    file.problem = FileProblem{"The disk is full"};
    exchange.importDocument();
    EXPECT_EQ(shown(), "Import failed: The disk is full");
    exchange.exportDocument();
    EXPECT_EQ(shown(), "Export failed: The disk is full");
    EXPECT_EQ(importing->state().scenes->size(), 1U);
}

} // namespace
} // namespace kova
