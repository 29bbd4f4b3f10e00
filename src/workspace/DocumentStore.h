// Stores the document of scenes and rules, and edits it.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "workspace/Outcome.h"
#include "workspace/StatusMessages.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <string>

namespace kova {

struct WorkspaceParts;

class DocumentStore {
  public:
    explicit DocumentStore(WorkspaceParts& parts);

    WorkspaceProductDocument workspaceDocument() const;
    void saveWorkspaceDocument();
    /// Stores the document, or refuses and shows the reason if it could not be read again.
    [[nodiscard]] Outcome changeDocument(WorkspaceProductDocument next);
    Outcome importWorkspaceDocument(std::string_view data);
    Decoded<std::string> exportWorkspaceDocument() const;
    /// The scenes and rules that importing the file would add.
    Decoded<WorkspaceImportCounts> previewImport(std::string_view data) const;
    Outcome renameScene(const Uuid& id, const std::string& name);
    Outcome deleteScene(const Uuid& id);
    /// Puts a deleted scene back into the list; at the end if the list is shorter than `index`.
    Outcome insertScene(WorkspaceScene scene, std::size_t index);
    std::optional<WorkspaceScene> sceneWithID(const Uuid& id) const;
    /// The scene with exactly this name, else the first whose name differs only in case.
    std::optional<Uuid> findScene(const std::string& name) const;
    Outcome addRule(WorkspaceRule rule);
    /// Like `addRule`, but neither checks the rule nor gives it a name. `subject` is named in the message.
    Outcome appendRule(WorkspaceRule rule, const std::string& subject);
    Outcome changeRule(const action::ChangeRule& change);
    Outcome deleteRule(const Uuid& id);
    /// `index` is the rule's index in the list after the move.
    Outcome moveRule(const Uuid& id, std::size_t index);
    /// Makes the scene active again; no scene is active if the scene does not exist any more.
    void restoreActiveScene(const std::optional<Uuid>& id);

  private:
    using RuleEdit = std::function<void(std::vector<WorkspaceRule>&, std::vector<WorkspaceRule>::iterator)>;
    std::optional<DecodingError> storeDocument(WorkspaceProductDocument next);
    Outcome editRule(const Uuid& id, const RuleEdit& edit);

    const WorkspaceServices& services_;
    WorkspaceState& state_;
    StatusMessages& messages_;
};

} // namespace kova
