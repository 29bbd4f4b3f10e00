// An application's preference for slots: its role, and the learned weights of slots.
#pragma once

#include "support/Decoded.h"
#include "support/Identifiers.h"

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

AutoArrangeAppRole classifyApplication(std::string_view name, const std::optional<BundleID>& bundleIdentifier);

/// The key of an application: its bundle identifier in lower case, else "name:" and its name in lower case.
std::string applicationKey(std::string_view name, const std::optional<BundleID>& bundleIdentifier);

/// The slot id that slots of the same meaning share in all layouts.
std::string_view canonicalSlotID(const SlotID& slotID);

struct AutoArrangeLearningModel {
    struct AppLearning {
        std::map<SlotID, double> slotWeights;
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

    /// A slot with at least this weight is a habit of the application. Three arrangements reach it, or one placement by
    /// the user. Larger stored weights count as this one.
    static constexpr double kHabitWeight = 3;
    /// The weight of a slot that the user chose. Older versions counted arrangements without a limit; the quarter
    /// distinguishes the user's choice from such a count.
    static constexpr double kUserWeight = 4.25;

    /// The application's preference for the slot, from 0 to 1: the slot's share of the habits on this layout. Without a
    /// habit on this layout: half the share of the slots with the same canonical id on the other layouts. Weights below
    /// a habit do not count.
    double preference(const std::string& layoutID, const std::string& applicationKey, const SlotID& slotID) const;
    /// Whether the user has put the application into the slot, and into no other slot of this layout since.
    bool isPlacedByUser(const std::string& layoutID, const std::string& applicationKey, const SlotID& slotID) const;
    /// Call when an arrangement has put windows of the application into the slots: their weights grow by 1 up to a
    /// habit. Weights of the layout's other slots, except the user's choice, are multiplied by 0.7 and dropped below
    /// 0.001.
    void learnArrangement(const std::string& layoutID, const std::string& applicationKey,
                          const std::set<SlotID>& slotIDs);
    /// Call when the user has put a window of the application into the slot, which becomes the only habit on this
    /// layout.
    void learnPlacementByUser(const std::string& layoutID, const std::string& applicationKey, const SlotID& slotID);
    /// Drops all weights of the application.
    void forget(const std::string& applicationKey);
    bool operator==(const AutoArrangeLearningModel&) const = default;
};

std::string encodeLearningModel(const AutoArrangeLearningModel& model);
Decoded<AutoArrangeLearningModel> decodeLearningModel(std::string_view json);

} // namespace kova
