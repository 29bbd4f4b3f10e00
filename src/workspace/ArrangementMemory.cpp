#include "workspace/ArrangementMemory.h"

#include "workspace/WorkspacePreferences.h"

#include <cstdlib>
#include <limits>
#include <utility>

namespace kova {

ArrangementMemory::ArrangementMemory(MainQueue& queue, PreferencesStore& preferences) :
    queue_(queue), preferences_(preferences), learning_(std::make_shared<const AutoArrangeLearningModel>()) {}

std::int64_t ArrangementMemory::dropRemainingSteps() {
    if (generation_ == std::numeric_limits<std::int64_t>::max()) std::abort();
    return ++generation_;
}

bool ArrangementMemory::takeStartupArrangement(bool isPermissionNew) {
    const bool isDue = isPermissionNew || !hadStartupArrangement_;
    hadStartupArrangement_ = true;
    return isDue;
}

void ArrangementMemory::loadLearning(AutoArrangeLearningModel model) {
    learning_.set(std::make_shared<const AutoArrangeLearningModel>(std::move(model)));
}

void ArrangementMemory::setLearning(Learning learning) {
    if (learning == *learning_) return;
    learning_.set(std::move(learning));
    if (std::exchange(isSavePending_, true)) return;
    queue_.post(lifetime_.guard([this] {
        isSavePending_ = false;
        saveLearning(preferences_, **learning_);
    }));
}

} // namespace kova
