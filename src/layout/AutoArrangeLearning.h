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

/// The id shared by the slots that have the same meaning in different layouts, for example "secondary-1" for
/// "focus-right-top". Any other id is returned unchanged.
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

    /// If a slot has at least this weight, its use is a habit of the application. Three arrangements reach this weight;
    /// one placement by the user exceeds it. Larger stored weights count as this one, except `kUserWeight`.
    static constexpr double kHabitWeight = 3;
    /// The weight of the slot that the user chose. The quarter distinguishes this weight from the weights that older
    /// versions stored: those counted arrangements without a limit.
    static constexpr double kUserWeight = 4.25;

    /// The application's preference for the slot, from 0 to 1: the slot's share of the weights of all habits on this
    /// layout. If the application has no habit on this layout, the result is half the share that the slots with the
    /// same canonical id have on the other layouts. Weights below `kHabitWeight` do not count.
    double preference(const std::string& layoutID, const std::string& applicationKey, const SlotID& slotID) const;
    /// Whether the user has put the application into the slot, and into no other slot of this layout since.
    bool isPlacedByUser(const std::string& layoutID, const std::string& applicationKey, const SlotID& slotID) const;
    /// Call when an arrangement has put windows of the application into the slots. The weights of these slots grow by
    /// 1, up to `kHabitWeight`. The weights of the layout's other slots are multiplied by 0.7, except the weight of the
    /// slot that the user chose. A weight below 0.001 is removed.
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
