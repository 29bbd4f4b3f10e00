// What steers an application towards a slot: its role, and what was learnt about where the user keeps it.
#pragma once

#include "support/Decoded.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

enum class AutoArrangeAppRole { utility = 0, other = 1, productivity = 2, browser = 3, codingAgent = 4 };

/// "utility", "other", "productivity", "browser", "coding agent": for explanations.
std::string_view describe(AutoArrangeAppRole role);

AutoArrangeAppRole classifyApplication(std::string_view name, const std::optional<std::string>& bundleIdentifier);

/// Under which an application is remembered: its bundle identifier in lower case, else "name:" and its name in lower
/// case.
std::string applicationKey(std::string_view name, const std::optional<std::string>& bundleIdentifier);

/// The slot id under which learning carries over between layouts.
std::string_view canonicalSlotID(std::string_view slotID);
/// The other slot ids whose canonical id this is, in a fixed order.
std::vector<std::string_view> slotIDAliases(std::string_view canonicalID);

struct AutoArrangeLearningModel {
    struct AppLearning {
        std::map<std::string, double> slotWeights;
        std::int64_t placementCount = 0;
        bool operator==(const AppLearning&) const = default;

        void forgetFaded();
        void count(std::size_t placements);
    };
    struct LayoutLearning {
        std::map<std::string, AppLearning> applications; // by application key
        bool operator==(const LayoutLearning&) const = default;
    };
    std::map<std::string, LayoutLearning> layouts; // by layout id

    /// From this weight on a slot is where the user keeps the application: three arrangements left it there, or the
    /// user put it there. A stored weight that is larger counts as this one.
    static constexpr double kHabitWeight = 3;
    /// Of the slot that the user chose. No rule that counts arrangements gives a quarter, so a stored model that had no
    /// limit does not hold a slot for the user's choice.
    static constexpr double kUserWeight = 4.25;

    /// How much the application is at home in the slot, from 0 to 1: the slot's share of the habits learnt on this
    /// layout, else the share that other layouts give to slots of the same canonical id, halved. What is not a habit
    /// yet counts for nothing.
    double preference(const std::string& layoutID, const std::string& applicationKey, std::string_view slotID) const;
    /// Whether the user has put the application into the slot, and not elsewhere on this layout since.
    bool isPlacedByUser(const std::string& layoutID, const std::string& applicationKey, std::string_view slotID) const;
    /// An arrangement has put windows of the application into the slots: their weights rise by 1 up to a habit, those
    /// of the layout's other slots fade to 0.7 of what they were and are forgotten below 0.001, unless the user chose
    /// them.
    void learnArrangement(const std::string& layoutID, const std::string& applicationKey,
                          const std::set<std::string>& slotIDs);
    /// The user has put a window of the application into the slot, which is a habit at once, and the only one.
    void learnPlacementByUser(const std::string& layoutID, const std::string& applicationKey,
                              const std::string& slotID);
    /// Drops all that was learnt of the application.
    void forget(const std::string& applicationKey);
    bool operator==(const AutoArrangeLearningModel&) const = default;
};

std::string encodeLearningModel(const AutoArrangeLearningModel& model);
Decoded<AutoArrangeLearningModel> decodeLearningModel(std::string_view json);

} // namespace kova
