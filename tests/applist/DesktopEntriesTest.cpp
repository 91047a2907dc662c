#include "applist/DesktopEntries.h"

#include "tests/applist/Desktop.h"

#include <algorithm>
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
};

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
    write(first / "noprogram.desktop", "[Desktop Entry]\nType=Application\nName=A\nExec=/no/such/program\n");
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
    const fs::path program = folder / "two words";
    write(program, "#!/bin/sh\n");
    fs::permissions(program, fs::perms::owner_all);
    write(first / "quoted.desktop",
          "[Desktop Entry]\nType=Application\nName=Quoted\nExec=\"" + program.string() + "\" %U\n");
    EXPECT_EQ(shown(), (Shown{{"quoted", "Quoted"}}));
    EXPECT_FALSE(entries.refresh());
    EXPECT_EQ(entries.filesRead(), 1);
    fs::remove(program);
    EXPECT_EQ(shown(), Shown{});
}

TEST_F(Entries, OfProgramsThatAreInstalledLaterShowThen) {
    const fs::path program = folder / "program";
    write(first / "late.desktop", entryNamed("Late", "TryExec=" + program.string() + "\n"));
    EXPECT_EQ(shown(), Shown{});
    write(program, "#!/bin/sh\n");
    fs::permissions(program, fs::perms::owner_all);
    EXPECT_EQ(shown(), (Shown{{"late", "Late"}}));
}

TEST_F(Entries, OfProgramsThatAreRemovedLaterShowNoMore) {
    const fs::path tried = folder / "tried";
    const fs::path run = folder / "run";
    for (const fs::path& program : {tried, run}) {
        write(program, "#!/bin/sh\n");
        fs::permissions(program, fs::perms::owner_all);
    }
    write(first / "tried.desktop", entryNamed("Tried", "TryExec=" + tried.string() + "\n"));
    write(first / "run.desktop", "[Desktop Entry]\nType=Application\nName=Run\nExec=" + run.string() + " --now\n");
    EXPECT_EQ(shown(), (Shown{{"run", "Run"}, {"tried", "Tried"}}));
    EXPECT_EQ(shown().size(), 2U);
    EXPECT_EQ(entries.filesRead(), 2) << "while the programs are there";
    fs::remove(tried);
    EXPECT_EQ(shown(), (Shown{{"run", "Run"}}));
    fs::permissions(run, fs::perms::owner_read);
    EXPECT_EQ(shown(), Shown{});
    fs::permissions(run, fs::perms::owner_all);
    EXPECT_EQ(shown(), (Shown{{"run", "Run"}}));
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

TEST_F(Entries, AreThoseThatGioFinds) {
    const fs::path applications = tests::Desktop::systemData() / "applications";
    write(applications / "top.desktop", entryNamed("Top"));
    write(applications / ".unseen/dotted.desktop", entryNamed("Dotted"));
    write(applications / "folder.desktop/inner.desktop", entryNamed("Inner"));
    write(folder / "elsewhere/deep/below.desktop", entryNamed("Below"));
    fs::create_directory_symlink(folder / "elsewhere", applications / "linked");
    fs::create_symlink(folder / "elsewhere/deep/below.desktop", applications / "file.desktop");
    Shown found;
    GList* all = g_app_info_get_all();
    for (const GList* at = all; at; at = at->next) {
        std::string identifier = g_app_info_get_id(G_APP_INFO(at->data));
        identifier.resize(identifier.size() - std::string(".desktop").size());
        found.emplace_back(identifier, g_app_info_get_name(G_APP_INFO(at->data)));
    }
    g_list_free_full(all, g_object_unref);
    std::sort(found.begin(), found.end());
    DesktopEntries ofSystem({applications});
    ofSystem.refresh();
    EXPECT_EQ(ofSystem.shown(), found);
    EXPECT_EQ(found.size(), 4U);
    fs::remove_all(applications);
}

} // namespace
