#include "applist/DesktopEntries.h"

#include "tests/applist/Desktop.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <gio/gdesktopappinfo.h>
#include <sys/stat.h>

namespace {

using applist::DesktopEntries;
using tests::entryNamed;
using tests::write;
using Shown = std::vector<std::pair<std::string, std::string>>;
namespace fs = std::filesystem;

struct Entries : tests::FolderTest {
    fs::path first = folder / "first";
    fs::path second = folder / "second";
    DesktopEntries entries{{first, second, folder / "missing"}};

    Shown shown() {
        entries.refresh();
        return entries.shown();
    }
    /// Installs a program that can be run.
    std::string program(const std::string& name) const {
        write(folder / name, "#!/bin/sh\n");
        fs::permissions(folder / name, fs::perms::owner_all);
        return folder / name;
    }
};

std::string entryThatRuns(const std::string& exec) {
    return "[Desktop Entry]\nType=Application\nName=A\nExec=" + exec + "\n";
}

Shown foundByGio() {
    Shown found;
    GList* all = g_app_info_get_all();
    for (const GList* at = all; at; at = at->next) {
        std::string identifier = g_app_info_get_id(G_APP_INFO(at->data));
        identifier.resize(identifier.size() - std::string(".desktop").size());
        found.emplace_back(identifier, g_app_info_get_name(G_APP_INFO(at->data)));
    }
    g_list_free_full(all, g_object_unref);
    std::sort(found.begin(), found.end());
    return found;
}

TEST_F(Entries, AreNamedInTheUsersLanguageAndKnownByTheirPath) {
    write(first / "org.example.Weather.desktop", entryNamed("Weather", "Name[de]=Wetter\nName[sv]=Väder\n"));
    write(first / "tools/clock.desktop", entryNamed("Clock"));
    EXPECT_EQ(shown(), (Shown{{"org.example.Weather", "Wetter"}, {"tools-clock", "Clock"}}));
    ASSERT_NE(entries.find("tools-clock"), nullptr);
    EXPECT_EQ(entries.find("tools-clock")->icon, nullptr);
    EXPECT_EQ(entries.find("clock"), nullptr);
}

TEST_F(Entries, AreNamedByAnotherOfTheirNamesWhereOneIsEmpty) {
    write(first / "full.desktop", entryNamed("Full", "X-GNOME-FullName=\n"));
    write(first / "translated.desktop", entryNamed("Translated", "Name[de]=\n"));
    EXPECT_EQ(shown(), (Shown{{"full", "Full"}, {"translated", "Translated"}}));
}

TEST_F(Entries, LeaveOutWhatUsersAreNotToSee) {
    write(first / "hidden.desktop", entryNamed("Hidden", "Hidden=true\n"));
    write(first / "internal.desktop", entryNamed("Internal", "NoDisplay=true\n"));
    write(first / "elsewhere.desktop", entryNamed("Elsewhere", "OnlyShowIn=Other;\n"));
    write(first / "gone.desktop", entryNamed("Gone", "TryExec=/no/such/program\n"));
    write(first / "here.desktop", entryNamed("Here", "OnlyShowIn=Test;\n"));
    EXPECT_EQ(shown(), (Shown{{"here", "Here"}}));
    EXPECT_EQ(entries.find("hidden"), nullptr);
    EXPECT_EQ(entries.find("internal"), nullptr);
}

TEST_F(Entries, LeaveOutWhatIsBroken) {
    write(first / "empty.desktop", "");
    write(first / "noise.desktop", std::string("\xFF\0\x01[Desktop", 11));
    write(first / "link.desktop", "[Desktop Entry]\nType=Link\nName=Link\nURL=file:///\n");
    write(first / "nameless.desktop", "[Desktop Entry]\nType=Application\nExec=true\n");
    write(first / "emptyname.desktop", entryNamed(""));
    write(first / "badname.desktop", entryNamed("\xC3("));
    write(first / "noprogram.desktop", entryThatRuns("/no/such/program"));
    write(first / "bad\xFFname.desktop", entryNamed("A"));
    write(first / "huge.desktop", entryNamed("Huge") + std::string(2 << 20, '#'));
    write(first / "text.txt", entryNamed("Text"));
    write(first / ".desktop", entryNamed("Nobody"));
    fs::create_directories(first / "folder.desktop");
    fs::create_symlink("nowhere", first / "dangling.desktop");
    fs::create_symlink(first, first / "loop");
    ASSERT_EQ(mkfifo((first / "pipe.desktop").c_str(), 0600), 0);
    write(first / "good.desktop", entryNamed("Good"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(shown(), (Shown{{"good", "Good"}}));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Entries, OfTheEarlierFolderHideThoseOfTheLater) {
    for (const char* name : {"changed", "hidden", "broken", "plain"})
        write(second / (std::string(name) + ".desktop"), entryNamed("System's"));
    write(first / "changed.desktop", entryNamed("User's"));
    write(first / "hidden.desktop", entryNamed("Hidden", "Hidden=true\n"));
    write(first / "broken.desktop", "");
    EXPECT_EQ(shown(), (Shown{{"changed", "User's"}, {"plain", "System's"}}));
    fs::remove(first / "changed.desktop");
    fs::remove(first / "hidden.desktop");
    EXPECT_EQ(shown(), (Shown{{"changed", "System's"}, {"hidden", "System's"}, {"plain", "System's"}}));
}

TEST_F(Entries, AreReadAgainOnlyWhenTheirFilesHaveChanged) {
    constexpr int many = 2000;
    for (int i = 0; i < many; ++i)
        write(second / ("application" + std::to_string(i) + ".desktop"),
              entryNamed("Application " + std::to_string(i)));
    EXPECT_TRUE(entries.refresh());
    EXPECT_EQ(entries.filesRead(), many);
    EXPECT_EQ(entries.shown().size(), many);
    ASSERT_NE(entries.find("application1999"), nullptr);
    EXPECT_EQ(entries.find("application1999")->name, "Application 1999");

    EXPECT_FALSE(entries.refresh());
    EXPECT_EQ(entries.filesRead(), many);
    EXPECT_EQ(entries.shown().size(), many);

    write(second / "application7.desktop", entryNamed("A new name"));
    write(first / "new.desktop", entryNamed("New"));
    EXPECT_TRUE(entries.refresh());
    EXPECT_EQ(entries.filesRead(), many + 2);
    EXPECT_EQ(entries.find("application7")->name, "A new name");

    fs::remove(second / "application8.desktop");
    EXPECT_FALSE(entries.refresh());
    EXPECT_EQ(entries.filesRead(), many + 2);
    EXPECT_EQ(entries.find("application8"), nullptr);
    EXPECT_EQ(entries.shown().size(), many);
}

TEST_F(Entries, OfQuotedProgramsAreReadOnce) {
    const std::string quoted = program("two words");
    write(first / "quoted.desktop", entryThatRuns('"' + quoted + "\" %U"));
    EXPECT_EQ(shown(), (Shown{{"quoted", "A"}}));
    EXPECT_FALSE(entries.refresh());
    EXPECT_EQ(entries.filesRead(), 1);
    fs::remove(quoted);
    EXPECT_EQ(shown(), Shown{});
}

TEST_F(Entries, OfProgramsThatAreInstalledLaterShowThen) {
    write(first / "late.desktop", entryNamed("Late", "TryExec=" + (folder / "late").string() + "\n"));
    EXPECT_EQ(shown(), Shown{});
    program("late");
    EXPECT_EQ(shown(), (Shown{{"late", "Late"}}));
}

TEST_F(Entries, OfProgramsThatAreRemovedLaterShowNoMore) {
    const std::string tried = program("tried");
    const std::string run = program("run");
    write(first / "tried.desktop", entryNamed("Tried", "TryExec=" + tried + "\n"));
    write(first / "run.desktop", entryThatRuns(run + " --now"));
    EXPECT_EQ(shown(), (Shown{{"run", "A"}, {"tried", "Tried"}}));
    EXPECT_EQ(shown().size(), 2U);
    EXPECT_EQ(entries.filesRead(), 2) << "while the programs are there";
    fs::remove(tried);
    EXPECT_EQ(shown(), (Shown{{"run", "A"}}));
    fs::permissions(run, fs::perms::owner_read);
    EXPECT_EQ(shown(), Shown{});
    fs::permissions(run, fs::perms::owner_all);
    EXPECT_EQ(shown(), (Shown{{"run", "A"}}));
}

TEST_F(Entries, OfLinkedFoldersAreFoundOnEveryWayThatComesToAnEnd) {
    write(first / "real/here.desktop", entryNamed("Here"));
    write(folder / "elsewhere/there.desktop", entryNamed("There"));
    write(folder / "elsewhere/deep/below.desktop", entryNamed("Below"));
    fs::create_directory_symlink("real", first / "again");
    fs::create_directory_symlink(folder / "elsewhere", first / "linked");
    fs::create_directory_symlink(".", first / "real/self");
    fs::create_directory_symlink(first, folder / "elsewhere/back");
    fs::create_directory_symlink("/", first / "everything");
    EXPECT_EQ(
        shown(),
        (Shown{
            {"again-here", "Here"}, {"linked-deep-below", "Below"}, {"linked-there", "There"}, {"real-here", "Here"}}));
}

TEST_F(Entries, OfFoldersThatLinkToThemselvesTwiceAreFoundOnce) {
    const fs::path applications = tests::Desktop::systemData() / "applications"; // GIO would look through it by itself
    write(applications / "clock.desktop", entryNamed("Clock"));
    for (const char* name : {"a", "b"})
        fs::create_directory_symlink(".", applications / name);
    DesktopEntries ofSystem({applications});
    EXPECT_TRUE(ofSystem.refresh());
    EXPECT_EQ(ofSystem.shown(), (Shown{{"clock", "Clock"}}));
    fs::remove_all(applications);
}

TEST_F(Entries, OfFoldersThatAllLinkToEachOtherAreFoundInFewWays) {
    constexpr int many = 20;
    const auto numbered = [&](int i) { return first / ("folder" + std::to_string(i)); };
    for (int i = 0; i < many; ++i)
        write(numbered(i) / "clock.desktop", entryNamed("Clock"));
    for (int i = 0; i < many; ++i)
        for (int j = 0; j < many; ++j)
            fs::create_directory_symlink(numbered(j), numbered(i) / ("link" + std::to_string(j)));
    const Shown found = shown();
    EXPECT_EQ(found.size(), 8 * many);
    for (int i = 0; i < many; ++i)
        EXPECT_NE(entries.find("folder" + std::to_string(i) + "-clock"), nullptr) << i;
    EXPECT_EQ(shown(), found);
}

TEST_F(Entries, OfAFolderComeBeforeThoseOfItsFoldersInTheirOrder) {
    write(first / "a-b-c.desktop", entryNamed("Outside"));
    write(first / "a/b-c.desktop", entryNamed("Inside"));
    write(first / "x/y-z.desktop", entryNamed("First"));
    write(first / "x-y/z.desktop", entryNamed("Second"));
    EXPECT_EQ(shown(), (Shown{{"a-b-c", "Outside"}, {"x-y-z", "First"}}));
}

TEST_F(Entries, SayWhatGioReadsInThem) {
    program("program");
    const std::string begin = "[Desktop Entry]\nType=Application\nName=A\n";
    const std::string inFolder = "Path=" + folder.string() + "\n";
    const std::vector<std::string> texts{
        "",
        begin,
        "[Other]\nKey=1\n" + begin,
        "# a remark\n\n" + begin,
        "[Desktop Entry]\nName=A\nExec=true\n",
        "[Desktop Entry]\nType=Link\nName=A\nExec=true\n",
        begin + "Exec=\n",
        begin + "Exec=   \n",
        begin + "Exec=true %U\n",
        begin + "Exec=\"true\n",
        begin + "Exec=no-such-program\n",
        begin + "Exec=./program\n",
        begin + inFolder + "Exec=program\n",
        begin + "Exec=" + folder.string() + "\n",
        begin + "Exec=true\nTryExec=\n",
        begin + "Exec=true\nTryExec=false\n",
        begin + "Exec=true\nTryExec=/no/such/program\n",
        begin + "DBusActivatable=true\n",
        begin + "NoDisplay=true\n",
        begin + "NoDisplay=perhaps\n",
        begin + "Hidden=1\n",
        begin + "OnlyShowIn=\n",
        begin + "OnlyShowIn=Test;\n",
        begin + "OnlyShowIn=Other;Test\n",
        begin + "OnlyShowIn=Other;\nNotShowIn=Test;\n",
        begin + "NotShowIn=Test;\n",
        begin + "NotShowIn=Other;\n",
        begin + "Name[de]=B\nX-GNOME-FullName=C\nX-GNOME-FullName[de]=D\n",
        begin + "Name[de]=B\nX-GNOME-FullName=C\n",
        begin + "Icon=clock\n",
        begin + "Icon=clock.png\nIcon[de]=uhr.svg\n",
        begin + "Icon=org.example.svg.Clock\n",
        begin + "Icon=/a/clock.png\n",
    };
    for (const std::string& text : texts) {
        const fs::path file = folder / "entry.desktop";
        write(file, text);
        const applist::DesktopEntry entry = applist::readDesktopEntry(file, {});
        const applist::GObjectPointer<GDesktopAppInfo> info(g_desktop_app_info_new_from_filename(file.c_str()));
        ASSERT_EQ(entry.readable, info != nullptr) << text;
        if (!info) continue;
        GAppInfo* application = G_APP_INFO(info.get());
        EXPECT_EQ(entry.shown, g_app_info_should_show(application) && !g_desktop_app_info_get_is_hidden(info.get()))
            << text;
        EXPECT_EQ(entry.name, g_app_info_get_display_name(application)) << text;
        GIcon* icon = g_app_info_get_icon(application);
        EXPECT_TRUE(icon ? g_icon_equal(entry.icon.get(), icon) : !entry.icon) << text;
    }
}

TEST_F(Entries, FindTheirProgramsInTheFolderInWhichTheyHaveThemRun) { // as GIO does since its version 2.76
    program("program");
    write(folder / "data", "");
    const std::string there = "\nPath=" + folder.string();
    write(first / "here.desktop",
          entryThatRuns("./program" + there + "\nTryExec=../" + folder.filename().string() + "/program"));
    write(first / "nothere.desktop", entryThatRuns("./other" + there));
    write(first / "noprogram.desktop", entryThatRuns("./data" + there));
    EXPECT_EQ(shown(), (Shown{{"here", "A"}}));
}

TEST_F(Entries, AreThoseThatGioFinds) {
    const fs::path applications = tests::Desktop::systemData() / "applications";
    write(applications / "top.desktop", entryNamed("Top"));
    write(applications / ".unseen/dotted.desktop", entryNamed("Dotted"));
    write(applications / "folder.desktop/inner.desktop", entryNamed("Inner"));
    write(folder / "elsewhere/deep/below.desktop", entryNamed("Below"));
    fs::create_directory_symlink(folder / "elsewhere", applications / "linked");
    fs::create_symlink(folder / "elsewhere/deep/below.desktop", applications / "file.desktop");
    Shown found;
    // It has looked already, perhaps, and hears of new files a little later.
    EXPECT_TRUE(tests::eventually([&] { return (found = foundByGio()).size() == 4; })) << found.size();
    DesktopEntries ofSystem({applications});
    ofSystem.refresh();
    EXPECT_EQ(ofSystem.shown(), found);
    fs::remove_all(applications);
}

} // namespace
