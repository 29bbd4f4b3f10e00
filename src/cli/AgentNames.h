// Names that the agent knows, for the completion of a parameter's value. Each function returns no names if no agent
// responds at once.
#pragma once

#include <string>
#include <vector>

namespace kova::cli {

struct Candidate {
    std::string text;
    std::string description{}; // may be empty
    bool operator==(const Candidate&) const = default;
};

std::vector<Candidate> layoutNames();
/// Names of layouts, and “automatic”.
std::vector<Candidate> layoutChoices();
std::vector<Candidate> displayNames();
std::vector<Candidate> windowNames();
std::vector<Candidate> tileNames();
std::vector<Candidate> splitNames();
std::vector<Candidate> boundaryNames();
std::vector<Candidate> applicationNames();
/// Applications about which data was learned.
std::vector<Candidate> learnedApplicationNames();
std::vector<Candidate> sceneNames();
std::vector<Candidate> ruleNames();
std::vector<Candidate> themeNames();
std::vector<Candidate> accentColorNames();
std::vector<Candidate> shortcutActionNames();

} // namespace kova::cli
