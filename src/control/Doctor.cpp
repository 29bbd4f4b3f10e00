#include "control/Doctor.h"

#include "persistence/PreferencesStore.h"
#include "support/Version.h"
#include "windowing/DiagnosticsServicing.h"
#include "workspace/WorkspaceController.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace kova {

namespace {

using Verdict = DiagnosticVerdict;

const char* word(Verdict verdict) {
    switch (verdict) {
    case Verdict::fine:
        return "fine";
    case Verdict::note:
        return "note";
    case Verdict::wrong:
        return "wrong";
    }
    return "";
}

DiagnosticLine permissionLine(const WorkspaceController& controller) {
    switch (*controller.state().permissionState) {
    case AccessibilityPermissionState::granted:
        return {"permission", Verdict::fine, "KOVA may move other applications' windows."};
    case AccessibilityPermissionState::denied:
        return {"permission", Verdict::wrong,
                "KOVA may not move other applications' windows; it stays idle until it has the permission."};
    case AccessibilityPermissionState::unknown:
        return {"permission", Verdict::note, "KOVA has not asked for the permission yet."};
    }
    return {};
}

DiagnosticLine displaysLine(const WorkspaceController& controller) {
    const auto& screens = *controller.state().screens;
    if (screens.empty()) return {"displays", Verdict::wrong, "No display is connected."};
    std::string names;
    for (const Screen& screen : screens) names += (names.empty() ? "" : ", ") + screen.localizedName;
    return {"displays", Verdict::fine, std::to_string(screens.size()) + ": " + names + "."};
}

DiagnosticLine managementLine(const WorkspaceController& controller) {
    if (controller.isRunning()) return {"management", Verdict::fine, "Windows are being watched."};
    return {"management", Verdict::wrong,
            "The agent has stopped watching windows; end it with “kova quit” and start it again."};
}

std::optional<DiagnosticLine> placingLine(const WorkspaceController& controller) {
    const auto obstacle = controller.whyWindowsStay();
    if (!obstacle) return std::nullopt;
    return DiagnosticLine{"placing windows", Verdict::wrong, *obstacle};
}

/// One line for each problem.
std::vector<DiagnosticLine> preferencesLines(const PreferencesStore& preferences) {
    std::vector<DiagnosticLine> lines;
    for (const auto& problem : preferences.problems()) lines.push_back({"preferences", Verdict::wrong, problem + "."});
    if (lines.empty()) lines.push_back({"preferences", Verdict::fine, "The preferences were read and can be written."});
    return lines;
}

std::optional<DiagnosticLine> shortcutsLine(const ControlContext& context, const std::vector<std::string>& held) {
    if (!context.keys) {
        return DiagnosticLine{"shortcuts", Verdict::note,
                              "KOVA cannot receive keys in this session; use the command line instead."};
    }
    const bool isSystem = context.keys->knownHolders() == KnownHolders::systemOnly;
    if (held.empty() && isSystem) return std::nullopt;
    if (held.empty()) return DiagnosticLine{"shortcuts", Verdict::fine, "No other program holds any shortcut of KOVA."};
    std::string names;
    for (const std::string& name : held) names += (names.empty() ? "" : ", ") + name;
    return DiagnosticLine{
        "shortcuts", Verdict::note,
        isSystem ? "The system itself acts on these keys, too: " + names +
                       ". Switch that off under System Settings → Keyboard → Keyboard Shortcuts, or choose others with "
                       "“kova shortcut set”."
                 : "Other programs hold these keys: " + names +
                       ". Free them there, or choose others with “kova shortcut set”."};
}

} // namespace

std::optional<std::string> limitationOf(const ControlContext& context) {
    for (const DiagnosticsServicing* part : context.diagnostics) {
        if (auto limitation = part->limitation()) return limitation;
    }
    return std::nullopt;
}

nlohmann::json examine(const ControlContext& context, const ShortcutMethods& shortcuts) {
    std::vector<DiagnosticLine> lines;
    for (const DiagnosticsServicing* part : context.diagnostics) {
        for (DiagnosticLine& line : part->diagnose()) lines.push_back(std::move(line));
    }
    // A line that the desktop reports has precedence over a general line about the same subject.
    const auto addUnlessKnown = [&lines](DiagnosticLine line) {
        const auto same = [&](const DiagnosticLine& known) { return known.subject == line.subject; };
        if (std::none_of(lines.begin(), lines.end(), same)) lines.push_back(std::move(line));
    };
    // If no window can be managed at all, these checks are pointless. The desktop has reported the reason.
    if (!context.controller.whyWindowsAreUnavailable()) {
        addUnlessKnown(permissionLine(context.controller));
        addUnlessKnown(displaysLine(context.controller));
        addUnlessKnown(managementLine(context.controller));
        if (auto obstacle = placingLine(context.controller)) addUnlessKnown(std::move(*obstacle));
    }
    for (DiagnosticLine& line : preferencesLines(context.preferences)) lines.push_back(std::move(line));
    if (auto line = shortcutsLine(context, shortcuts.heldByOthers())) addUnlessKnown(std::move(*line));

    nlohmann::json checks = nlohmann::json::array();
    bool isHealthy = true;
    for (const DiagnosticLine& line : lines) {
        isHealthy = isHealthy && line.verdict != Verdict::wrong;
        checks.push_back({{"subject", line.subject}, {"verdict", word(line.verdict)}, {"text", line.text}});
    }
    return {{"isHealthy", isHealthy}, {"version", KOVA_VERSION}, {"checks", std::move(checks)}};
}

} // namespace kova
