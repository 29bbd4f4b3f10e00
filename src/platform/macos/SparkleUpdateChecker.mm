#include "platform/macos/SparkleUpdateChecker.h"

#if KOVA_WITH_SPARKLE

#include "platform/macos/Contained.h"

#import <Sparkle/Sparkle.h>

namespace kova::macos {

namespace {

class SparkleUpdateChecker final : public UpdateChecker {
  public:
    bool canCheckForUpdates() const override { return updater().canCheckForUpdates; }
    void checkForUpdates() override {
        contained([this] { [controller_ checkForUpdates:nil]; });
    }
    bool automaticallyChecksForUpdates() const override { return updater().automaticallyChecksForUpdates; }
    void setAutomaticallyChecksForUpdates(bool checks) override { updater().automaticallyChecksForUpdates = checks; }
    bool automaticallyDownloadsUpdates() const override { return updater().automaticallyDownloadsUpdates; }
    void setAutomaticallyDownloadsUpdates(bool downloads) override {
        updater().automaticallyDownloadsUpdates = downloads;
    }

  private:
    SPUUpdater* updater() const { return controller_.updater; }

    SPUStandardUpdaterController* controller_ = [[SPUStandardUpdaterController alloc] initWithStartingUpdater:YES
                                                                                              updaterDelegate:nil
                                                                                           userDriverDelegate:nil];
};

} // namespace

std::unique_ptr<UpdateChecker> makeUpdateChecker() {
    // Without a feed every check fails with an error that users cannot act on.
    if (![NSBundle.mainBundle objectForInfoDictionaryKey:@"SUFeedURL"]) return nullptr;
    return std::make_unique<SparkleUpdateChecker>();
}

} // namespace kova::macos

#else

namespace kova::macos {

std::unique_ptr<UpdateChecker> makeUpdateChecker() {
    return nullptr;
}

} // namespace kova::macos

#endif
