// The installed applications, from their desktop entries. The entries are read at the first lookup, and again if one of
// their folders has changed when a new name is looked up. Missing or invalid files are skipped.
#pragma once

#include "platform/linux/XdgFolders.h"
#include "platform/x11/ApplicationCatalogue.h"
#include "support/Mutex.h"
#include "windowing/ApplicationServicing.h"

#include <cstdint>
#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kova {

/// The parts of a desktop entry that KOVA uses.
struct DesktopEntry {
    std::string name; // in the language of the given locale
    std::string windowClass;
    std::string iconName;
    bool isApplication = false;
    bool isHidden = false;      // counts as deleted, and so do the entries with the same id in later folders
    bool isDisplayed = true;    // in menus
    bool isFileManager = false; // by its categories
    bool needsTerminal = false;
    std::string execLine;                           // empty if there is none
    std::string tryExec;                            // a program; if it does not exist, the application is not installed
    std::string workingFolder;                      // empty if the entry names none
    std::vector<std::string> onlyShowIn, notShowIn; // desktops
};

/// Whether the entry is shown in the menus of these desktops, given in the form of XDG_CURRENT_DESKTOP
/// ("ubuntu:GNOME").
bool isShownOn(const DesktopEntry& entry, std::string_view currentDesktops);
/// The full path of the program, found in PATH unless `name` is a path; absent if there is no executable file.
std::optional<std::string> findProgram(const std::string& name);
/// The entry in that file; absent if it cannot be read or is invalid.
std::optional<DesktopEntry> readDesktopEntry(const std::string& path, std::string_view locale);

/// `locale` as in LC_MESSAGES: "sr_RS.UTF-8@latin". Absent without a "[Desktop Entry]" group.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale);

class DesktopEntries final : public ApplicationCatalogue {
  public:
    DesktopEntries(const XdgFolders& folders, std::string locale);
    /// The locale of messages, from the environment.
    static std::string localeOfMessages();

    /// Finds the application's entry. These conditions are tried in this order: the entry's id is the application's own
    /// ID; its StartupWMClass is the window's class or instance name; its id is the window's class; the last component
    /// of its id, after a reverse domain name, is the window's class. A window without a class is matched by its
    /// instance name instead. Except for the application's own ID, case is ignored if there is no exact match. Of
    /// several entries that meet a condition, those that menus show come first.
    ApplicationIdentity identify(const ApplicationTraces& traces) override;

    /// The applications that menus show, sorted by name.
    std::vector<LaunchableApplication> launchableApplications();
    /// The application of the entry with that id, which need not be shown in menus.
    std::optional<LaunchableApplication> launchableApplication(const BundleID& id);
    const std::string& locale() const { return locale_; }

  private:
    // There are hundreds of entries, of which few are used. To save memory, their texts are ranges of one text.
    struct Range {
        std::uint32_t start = 0;
        std::uint32_t length = 0;
    };
    struct Entry {
        Range path, id, name, windowClass, iconName;
        bool isHidden = false;
        bool isDisplayed = true;
        bool isListed = false; // in the menus of this desktop
        bool isFileManager = false;
    };
    struct Folder {
        std::string path;
        std::int64_t changedNanoseconds = 0; // 0 if the folder does not exist
    };

    void scan() KOVA_REQUIRES(mutex_);
    void scanFolder(const std::string& folder, const std::string& idPrefix, int depth) KOVA_REQUIRES(mutex_);
    void addFile(const std::string& path, const std::string& id) KOVA_REQUIRES(mutex_);
    bool hasChanged() const KOVA_REQUIRES(mutex_);
    LaunchableApplication launchable(const Entry& entry) const KOVA_REQUIRES(mutex_);
    const Entry* find(const ApplicationTraces& traces) const KOVA_REQUIRES(mutex_);
    Range keep(std::string_view text) KOVA_REQUIRES(mutex_);
    std::string_view text(Range range) const KOVA_REQUIRES(mutex_);

    Mutex mutex_;
    const std::vector<std::string> roots_; // the most important first
    const std::string locale_;
    bool isScanned_ KOVA_GUARDED_BY(mutex_) = false;
    std::string texts_ KOVA_GUARDED_BY(mutex_);
    std::vector<Entry> entries_ KOVA_GUARDED_BY(mutex_); // displayed ones first, then in the order of the folders
    std::vector<Folder> folders_ KOVA_GUARDED_BY(mutex_);
    std::map<ApplicationTraces, ApplicationIdentity> identities_ KOVA_GUARDED_BY(mutex_);
};

} // namespace kova
