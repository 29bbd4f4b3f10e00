// Platform interface to diagnostics: facts about a desktop that can prevent KOVA from moving windows.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kova {

enum class DiagnosticVerdict { fine, note, wrong };

struct DiagnosticLine {
    std::string subject; // "window manager", "displays", ...
    DiagnosticVerdict verdict = DiagnosticVerdict::fine;
    std::string text; // one sentence; when something is wrong, what to do about it
    bool operator==(const DiagnosticLine&) const = default;
};

class DiagnosticsServicing {
  public:
    virtual ~DiagnosticsServicing() = default;
    /// Main thread; never waits.
    virtual std::vector<DiagnosticLine> diagnose() const = 0;
    /// Why only some of the session's windows can be managed, and what to do; absent when all can. Main thread.
    virtual std::optional<std::string> limitation() const { return std::nullopt; }
};

} // namespace kova
