#include "platform/linux/DesktopEntries.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <thread>

namespace kova {
namespace {

std::string entry(const std::string& name, const std::string& more = "") {
    return "# a comment\n\n[Desktop Entry]\nType=Application\nName=" + name + "\n" + more +
           "\n[Desktop Action new]\nName=Not this one\nStartupWMClass=NorThis\n";
}

/// The user's and a system-wide folder of desktop entries.
class EntryFolders {
  public:
    void install(const std::string& file, const std::string& text) { folder_.write("user/applications/" + file, text); }
    void installForAll(const std::string& file, const std::string& text) {
        folder_.write("system/applications/" + file, text);
    }
    std::filesystem::path applications() const { return folder_.path() / "user/applications"; }
    DesktopEntries entries(const std::string& locale = "C") const {
        XdgFolders folders;
        folders.dataHome = folder_.path() / "user";
        folders.dataFolders = {folder_.path() / "missing", folder_.path() / "system"};
        return DesktopEntries(folders, locale);
    }

  private:
    TemporaryFolder folder_;
};

TEST(DesktopEntries, AWindowBelongsToTheBestMatchingEntry) {
    EntryFolders folders;
    folders.install("mail.desktop", entry("Mail", "StartupWMClass=Thunderbird\nIcon=mail-icon"));
    folders.install("profile.desktop", entry("Mail, at work", "StartupWMClass=work-profile"));
    folders.installForAll("org.example.Files.desktop", entry("Files"));
    folders.installForAll("GIMP.desktop", entry("Image Editor"));
    folders.installForAll("kde/konsole.desktop", entry("Konsole"));
    folders.installForAll("a-settings.desktop", entry("Not in menus", "StartupWMClass=Settings\nNoDisplay=true"));
    folders.installForAll("z-settings.desktop", entry("Settings", "StartupWMClass=Settings"));
    folders.installForAll("helper.desktop", entry("Helper", "NoDisplay=true"));
    auto entries = folders.entries();

    struct Case {
        std::string instance, windowClass, id, name, applicationID{};
    };
    const std::vector<Case> cases = {
        {"Mail", "Thunderbird", "mail", "Mail"},
        {"Mail", "thunderbird", "mail", "Mail"},
        {"work-profile", "Thunderbird", "mail", "Mail"}, // the class takes precedence over the instance
        {"work-profile", "Other", "profile", "Mail, at work"},
        {"x", "Org.example.files", "org.example.Files", "Files"},
        {"x", "files", "org.example.Files", "Files"},
        {"gimp", "Gimp", "GIMP", "Image Editor"},
        {"konsole", "kde-konsole", "kde-konsole", "Konsole"}, // a folder is part of the id
        {"x", "Settings", "z-settings", "Settings"},
        {"x", "Helper", "helper", "Helper"},
        {"x", "NorThis", "northis", "NorThis"},
        // A program can announce the id of its entry. The id takes precedence over the class if there is such an entry.
        {"x", "example-files", "org.example.Files", "Files", "org.example.Files"},
        {"x", "Thunderbird", "org.example.Files", "Files", "org.example.Files"},
        {"x", "Thunderbird", "mail", "Mail", "org.example.Missing"},
        {"x", "ÉDITEUR", "éditeur", "ÉDITEUR"},
        {"lonely", "", "lonely", "lonely"},
        {"", "", "", ""},
        {"bad\xff", "bad\xff", "bad\xEF\xBF\xBD", "bad\xEF\xBF\xBD"},
    };
    for (const auto& c : cases) {
        const auto identity = entries.identify({c.instance, c.windowClass, c.applicationID});
        EXPECT_EQ(identity.bundleIdentifier.text(), c.id) << c.instance << "/" << c.windowClass;
        EXPECT_EQ(identity.localizedName, c.name) << c.instance << "/" << c.windowClass;
    }
    const auto mail = entries.identify({"Mail", "Thunderbird"});
    EXPECT_EQ(mail.bundlePath, (folders.applications() / "mail.desktop").string());
    EXPECT_EQ(mail.iconName, "mail-icon");
    EXPECT_EQ(entries.identify({"x", "NorThis"}).bundlePath, "");
}

TEST(DesktopEntries, NamesAreInTheUsersLanguage) {
    const std::string text = entry("Plain", "Name[sr@latin]=sr@latin\nName[sr]=sr\nName[sr_RS]=sr_RS\n"
                                            "Name[de]=B\\sC\\\\D\nName[]=odd\nName[");
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"C", "Plain"},
        {"", "Plain"},
        {"fr_FR.UTF-8", "Plain"},
        {"sr_RS.UTF-8@latin", "sr_RS"},
        {"sr_ME@latin", "sr@latin"},
        {"sr_ME.UTF-8", "sr"},
        {"de_AT.UTF-8", "B C\\D"},
        {"de", "B C\\D"},
    };
    for (const auto& [locale, name] : cases) {
        const auto parsed = parseDesktopEntry(text, locale);
        ASSERT_TRUE(parsed);
        EXPECT_EQ(parsed->name, name) << locale;
    }
}

TEST(DesktopEntries, TheUsersEntryHidesTheSystemWideEntryWithTheSameIdAndInvalidFilesAreSkipped) {
    EntryFolders folders;
    folders.installForAll("editor.desktop", entry("Editor of all", "StartupWMClass=Editor"));
    folders.install("editor.desktop", entry("My editor", "StartupWMClass=Editor"));
    folders.installForAll("deleted.desktop", entry("Deleted", "StartupWMClass=Deleted"));
    folders.install("deleted.desktop", "[Desktop Entry]\nHidden=true\n");
    folders.install("link.desktop", "[Desktop Entry]\nType=Link\nName=Link\nStartupWMClass=Link\n");
    folders.install("nameless.desktop", "[Desktop Entry]\nType=Application\nStartupWMClass=Nameless\n");
    folders.install("noise.desktop", std::string("\0\xff[Desktop", 10));
    folders.install("empty.desktop", "");
    folders.install("bytes\xff.desktop", entry("Bytes", "StartupWMClass=Bytes"));
    folders.install("windows.desktop",
                    "[Desktop Entry]\r\nType=Application\r\nName=From elsewhere\r\nStartupWMClass=Crlf\r\n");
    folders.install("huge.desktop", entry("Huge", "StartupWMClass=Huge\n" + std::string(2 << 20, '#')));
    ASSERT_EQ(mkfifo((folders.applications() / "pipe.desktop").c_str(), 0600), 0); // opening a pipe would wait forever
    std::filesystem::create_directory(folders.applications() / "folder.desktop");
    std::filesystem::create_directory_symlink(folders.applications(), folders.applications() / "circle");
    std::filesystem::create_symlink("nowhere", folders.applications() / "dangling.desktop");
    auto entries = folders.entries();
    EXPECT_EQ(entries.identify({"", "Editor"}).localizedName, "My editor");
    EXPECT_EQ(entries.identify({"", "Crlf"}).localizedName, "From elsewhere");
    for (const std::string name :
         {"Deleted", "Link", "Nameless", "Huge", "Pipe", "Folder", "Dangling", "Empty", "Bytes"}) {
        EXPECT_EQ(entries.identify({"", name}).bundlePath, "") << name;
    }
}

TEST(DesktopEntries, AnEntryThatIsInstalledLaterIsFoundAfterTheLookupOfAnUnknownName) {
    EntryFolders folders;
    folders.install("one.desktop", entry("One"));
    auto entries = folders.entries();
    EXPECT_EQ(entries.identify({"", "One"}).localizedName, "One");
    EXPECT_EQ(entries.identify({"", "Two"}).bundlePath, "");
    folders.install("two.desktop", entry("The second"));
    // File times may be so coarse that the installation alone does not change the folder's time.
    std::filesystem::last_write_time(folders.applications(), std::filesystem::last_write_time(folders.applications()) +
                                                                 std::chrono::seconds(1));
    EXPECT_EQ(entries.identify({"", "Three"}).bundlePath, ""); // the lookup of an unknown name reads the folders again
    EXPECT_EQ(entries.identify({"", "Two"}).localizedName, "The second");

    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&entries, t] {
            for (int i = 0; i < 500; ++i) entries.identify({"", "Class" + std::to_string(i * t)});
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(entries.identify({"", "One"}).localizedName, "One");
}

} // namespace
} // namespace kova
