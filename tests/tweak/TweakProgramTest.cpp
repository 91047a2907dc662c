#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"
#include "tests/tweak/Messages.h"
#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include "tweak/Defaults.h"
#include "tweak/SettingsStore.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/PropertyList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstddef>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

using namespace lumora;
using namespace tests;
using platform::Data;
using platform::kCFMessagePortSuccess;
using platform::Value;
using testing::AnyOf;
using testing::ElementsAre;
using testing::Eq;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class TweakProgram : public testing::Test {
  protected:
    [[nodiscard]] std::vector<std::string> command(std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {LUMORA_TWEAK, "--settings", sandbox.settings().string()});
        return options;
    }

    /// The ports that have a socket, live or dead.
    [[nodiscard]] std::vector<std::string> sockets() const {
        std::vector<std::string> names;
        std::error_code none;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(sandbox.ports(), none))
            if (entry.is_socket()) names.push_back(entry.path().filename());
        return names;
    }

    /// What a tweak says that may not have the port.
    [[nodiscard]] std::string heldPort(const std::string& message) const {
        return "lumora-tweak: cannot open the port " + (sandbox.ports() / "com.nevo.lumora" / message).string() +
               ": another process holds it\n";
    }

    /// The tweak says that its settings are in the file, and keeps changes there.
    static void expectSettingsAt(const std::filesystem::path& file, Program& tweak) {
        ASSERT_EQ(tweak.readLine(), "lumora-tweak ready, settings at " + file.string()) << tweak.errors();
        EXPECT_EQ(change("kSleepTime", 30), "");
        EXPECT_TRUE(std::filesystem::exists(file));
    }

    Sandbox sandbox;
};

/// Where a service manager listens; "@" begins a name that is no file's.
class NotifySocket {
  public:
    explicit NotifySocket(const std::string& name) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        name.copy(address.sun_path, sizeof address.sun_path);
        if (name.front() == '@') address.sun_path[0] = '\0';
        const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
        EXPECT_EQ(bind(socket_.number(), reinterpret_cast<const sockaddr*>(&address), size), 0) << name;
        const timeval patience{60, 0};
        setsockopt(socket_.number(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    }

    /// What is told next; empty after a minute of silence.
    [[nodiscard]] std::string next() const {
        char text[100];
        const ssize_t size = recv(socket_.number(), text, sizeof text, 0);
        return size > 0 ? std::string(text, static_cast<std::size_t>(size)) : "";
    }

  private:
    platform::FileDescriptor socket_{socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
};

} // namespace

TEST_F(TweakProgram, SaysItIsReadyOnceBothPortsAnswer) {
    Program tweak(command());
    expectSettingsAt(sandbox.settings(), tweak);
    EXPECT_EQ(askForSettings()["kSleepTime"], Value(30));
}

TEST_F(TweakProgram, KeepsItsSettingsUnderTheDeviceRoot) {
    Program tweak({LUMORA_TWEAK, "--root", sandbox.path()});
    expectSettingsAt(sandbox.path().string() + kSettingsPath, tweak);
}

TEST_F(TweakProgram, KeepsItsSettingsAmongTheUsersOwnFilesWhenNoRootIsAskedFor) {
    setenv("XDG_CONFIG_HOME", (sandbox.path() / "config").c_str(), 1);
    Program tweak({LUMORA_TWEAK});
    const std::filesystem::path kept = sandbox.path() / "config/lumora/com.nevo.lumora.plist";
    expectSettingsAt(kept, tweak);
    EXPECT_EQ(std::filesystem::status(kept).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(std::filesystem::status(kept.parent_path()).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(TweakProgram, KeepsItsSettingsInTheHomeFolderWithoutAConfigurationFolder) {
    setenv("XDG_CONFIG_HOME", "a/relative/path/is/to/be/ignored", 1);
    setenv("HOME", (sandbox.path() / "home").c_str(), 1);
    Program tweak({LUMORA_TWEAK});
    expectSettingsAt(sandbox.path() / "home/.config/lumora/com.nevo.lumora.plist", tweak);
}

TEST_F(TweakProgram, SaysThatAUserWithoutAHomeHasNoPlaceForSettings) {
    const auto runAsUnlisted = [](const char* program) { // as a user whom no list of users has
        return run({"unshare", "--user", "--map-user=54321", program});
    };
    if (runAsUnlisted("true").status != 0) GTEST_SKIP() << "name spaces of users are not permitted";
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("HOME");
    const Finished tweak = runAsUnlisted(LUMORA_TWEAK);
    EXPECT_EQ(tweak.status, 1);
    EXPECT_EQ(tweak.errors,
              "lumora-tweak: there is no home folder to keep settings in: set $XDG_CONFIG_HOME or use --settings\n");
}

TEST_F(TweakProgram, TellsTheServiceManagerOnceBothPortsAnswer) {
    const std::string file = sandbox.path() / "notify";
    for (const std::string& name : {file, "@" + file}) {
        const NotifySocket manager(name);
        setenv("NOTIFY_SOCKET", name.c_str(), 1);
        Program tweak(command());
        unsetenv("NOTIFY_SOCKET");
        EXPECT_EQ(manager.next(), "READY=1") << name << ": " << tweak.errors();
        EXPECT_EQ(change("kSleepTime", 30), "");
        EXPECT_EQ(askForSettings()["kSleepTime"], Value(30));
    }
}

TEST_F(TweakProgram, ServesAlthoughTheServiceManagerIsGone) {
    for (const std::string& name : {(sandbox.path() / "nobody").string(), std::string(200, 'x'), std::string("@")}) {
        setenv("NOTIFY_SOCKET", name.c_str(), 1);
        const RunningTweak tweak(command());
        unsetenv("NOTIFY_SOCKET");
        EXPECT_EQ(change("kSleepTime", 30), "");
    }
}

TEST_F(TweakProgram, AnswersARefusalWithItsReasonAndLogsIt) {
    RunningTweak tweak(command());
    EXPECT_EQ(change("kTweakEnabled", "yes"), "kTweakEnabled takes true or false, not a text");
    EXPECT_EQ(tweak.errors(), "lumora-tweak: updateSettings refused: kTweakEnabled takes true or false, not a text\n");
    EXPECT_EQ(askForSettings()["kTweakEnabled"], Value(true));
}

TEST_F(TweakProgram, IgnoresMessagesOfAnotherId) {
    RunningTweak tweak(command({"--verbose"}));
    for (const std::int32_t id : {1, 2, -1}) {
        std::optional<Data> reply;
        EXPECT_EQ(send("updateSettings", changeBody("kSleepTime", 30), reply, id), kCFMessagePortSuccess);
        EXPECT_EQ(reply, std::nullopt);
    }
    EXPECT_EQ(askForSettings()["kSleepTime"], findSetting("kSleepTime")->byDefault);
    EXPECT_EQ(tweak.errors(), "lumora-tweak: requestTweakSettings: 50 settings\n");
}

TEST_F(TweakProgram, OmitsKeysAndHidesPasscodesAsItsOptionsSay) {
    RunningTweak tweak(command({"--verbose", "--omit", "kSleepTime", "--omit", "kTweakEnabled"}));
    EXPECT_EQ(change("kAutoUnlockPasscode", "24680"), "");
    const Value settings = askForSettings();
    EXPECT_FALSE(settings.dictionary()->contains("kSleepTime"));
    EXPECT_FALSE(settings.dictionary()->contains("kTweakEnabled"));
    EXPECT_EQ(settings["kAutoUnlockPasscode"], Value("24680"));
    EXPECT_EQ(tweak.errors(), "lumora-tweak: updateSettings: \"kAutoUnlockPasscode\" = •••\n"
                              "lumora-tweak: requestTweakSettings: 48 settings\n");
}

TEST_F(TweakProgram, LogsNothingThatATerminalObeys) {
    RunningTweak tweak(command({"--verbose"}));
    EXPECT_EQ(change("\u009B2J", 1), "");
    EXPECT_EQ(change("kLSDateSubtitle", "\u202Eleft\u2028"), "");
    EXPECT_EQ(tweak.errors(), "lumora-tweak: updateSettings: \"\\u009b2J\" = 1\n"
                              "lumora-tweak: updateSettings: \"kLSDateSubtitle\" = \"\\u202eleft\\u2028\"\n");
}

TEST_F(TweakProgram, TakesABareNameForItsSettings) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(sandbox.path());
    Program tweak({LUMORA_TWEAK, "--settings", "a.plist"});
    std::filesystem::current_path(before);
    expectSettingsAt(sandbox.path() / "a.plist", tweak);
}

TEST_F(TweakProgram, AnswersWhileNobodyReadsWhatItSaysAndTellsLaterHowManyLinesAreMissing) {
    const std::filesystem::path said = sandbox.path() / "said";
    ASSERT_EQ(mkfifo(said.c_str(), 0600), 0);
    const platform::FileDescriptor pipe(::open(said.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    char block[4096]{};
    while (::write(pipe.number(), block, sizeof block) > 0) {
    }
    const auto take = [&] {
        std::string text;
        for (ssize_t got = 0; (got = ::read(pipe.number(), block, sizeof block)) > 0;)
            text.append(block, static_cast<std::size_t>(got));
        return text;
    };
    const std::string notify = sandbox.path() / "notify";
    const NotifySocket manager(notify); // is told after the log is
    setenv("NOTIFY_SOCKET", notify.c_str(), 1);
    Program tweak({"/bin/sh", "-c", "exec \"$@\" >\"$0\" 2>&1", said, LUMORA_TWEAK, "--settings", sandbox.settings()});
    ASSERT_EQ(manager.next(), "READY=1");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(change("kSleepTime", "soon"), "kSleepTime takes a finite number, not a text");
    EXPECT_EQ(change("kSleepTime", 30), "");
    EXPECT_EQ(take().find_first_not_of('\0'), std::string::npos);
    EXPECT_EQ(change("kTweakEnabled", 1), "kTweakEnabled takes true or false, not an integer");
    EXPECT_EQ(take(), "lumora-tweak: lines missing here, because the log was full: 3\n"
                      "lumora-tweak: updateSettings refused: kTweakEnabled takes true or false, not an integer\n");
    tweak.signal(SIGTERM);
    EXPECT_EQ(tweak.wait(), 0);
}

TEST_F(TweakProgram, LeavesNoSocketsWhenASignalEndsIt) {
    for (const int signal : {SIGTERM, SIGINT}) {
        RunningTweak tweak(command());
        EXPECT_EQ(sockets().size(), 5U);
        tweak.signal(signal);
        EXPECT_EQ(tweak.wait(), 0);
        EXPECT_THAT(sockets(), IsEmpty());
        EXPECT_EQ(tweak.errors(), "");
    }
}

TEST_F(TweakProgram, EndsCleanlyWhileChangesPourIn) {
    RunningTweak tweak(command());
    std::atomic<int> answered = 0;
    std::thread client([&answered] {
        while (change("com.example.count", answered + 1).empty())
            answered.fetch_add(1);
        answered.notify_all();
    });
    EXPECT_TRUE(eventually([&] { return answered >= 20; })) << "answers";
    tweak.signal(SIGTERM);
    EXPECT_EQ(tweak.wait(), 0);
    client.join();
    EXPECT_THAT(sockets(), IsEmpty());
    const Value kept = platform::readPropertyList(bytesOf(readFile(sandbox.settings()))).value();
    EXPECT_THAT(kept["com.example.count"].integer(), AnyOf(Eq(answered.load()), Eq(answered.load() + 1)));
}

TEST_F(TweakProgram, SaysThatAnotherTweakHoldsThePortsWhetherOrNotItAnswers) {
    const RunningTweak first(command());
    const auto expectHeld = [this] {
        const Finished second = run({LUMORA_TWEAK, "--settings", sandbox.path() / "other.plist"});
        EXPECT_EQ(second.status, 1);
        EXPECT_EQ(second.output, "");
        EXPECT_EQ(second.errors, heldPort("updateSettings"));
    };
    expectHeld();
    first.signal(SIGSTOP);
    expectHeld();
    first.signal(SIGCONT);
    EXPECT_EQ(change("kSleepTime", 30), "") << "the first one still serves";
}

TEST_F(TweakProgram, KeepsNeitherPortWhenSomebodyElseHoldsTheSecond) {
    const ServedPort held("com.nevo.lumora/requestTweakSettings", [](auto&, auto, auto&) { return std::nullopt; });
    ASSERT_TRUE(held.isOpen());
    const Finished tweak = run(command());
    EXPECT_EQ(tweak.status, 1);
    EXPECT_EQ(tweak.errors, heldPort("requestTweakSettings"));
    EXPECT_THAT(sockets(), ElementsAre(HasSubstr("requestTweakSettings")));
}

TEST_F(TweakProgram, SaysThatAnotherTweakHoldsTheSettings) {
    RunningTweak first(command());
    setenv("LUMORA_PORTS", (sandbox.path() / "other-ports").c_str(), 1);
    const Finished second = run(command());
    EXPECT_EQ(second.status, 1);
    EXPECT_THAT(second.errors, HasSubstr("another lumora-tweak is running: it holds " + sandbox.settings().string()));
}

TEST_F(TweakProgram, LeavesExactlyOneOfSeveralThatStartAtOnce) {
    std::vector<std::unique_ptr<Program>> tweaks;
    for (int i = 0; i < 4; ++i)
        tweaks.push_back(std::make_unique<Program>(
            std::vector<std::string>{LUMORA_TWEAK, "--settings", sandbox.path() / ("settings-" + std::to_string(i))}));
    int ready = 0;
    for (const auto& tweak : tweaks) {
        if (tweak->readLine().starts_with("lumora-tweak ready")) {
            ++ready;
        } else {
            EXPECT_EQ(tweak->wait(), 1);
            EXPECT_EQ(tweak->errors(), heldPort("updateSettings"));
        }
    }
    EXPECT_EQ(ready, 1);
    EXPECT_EQ(change("kSleepTime", 30), "");
}

TEST_F(TweakProgram, SaysThatThePortsFolderCannotBeUsed) {
    writeFile(sandbox.ports(), "a file where the folder should be");
    const Finished tweak = run(command());
    EXPECT_EQ(tweak.status, 1);
    EXPECT_THAT(tweak.errors, HasSubstr("port " + sandbox.ports().string()));
    EXPECT_THAT(tweak.errors, HasSubstr("its folder cannot be made, or is not a folder of yours alone"));
}

TEST_F(TweakProgram, SaysSoWhenTooFewDescriptorsAreLeft) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the check of virtual tables needs a pipe of its own to look at memory";
#endif
    bool started = false;
    for (int few = 6; !started && few < 100; ++few) { // below that, the loader finds no library
        Program tweak({"/bin/sh", "-c", "ulimit -n " + std::to_string(few) + "; exec \"$@\"", "sh", LUMORA_TWEAK,
                       "--settings", sandbox.settings()});
        started = !tweak.readLine().empty();
        if (started) {
            EXPECT_FALSE(askForSettings().isNil()) << few;
            continue;
        }
        EXPECT_EQ(tweak.wait(), 1) << few;
        EXPECT_THAT(tweak.errors(),
                    AnyOf(testing::EndsWith("not enough descriptors are left\n"), HasSubstr("Too many open files")))
            << few;
    }
    EXPECT_TRUE(started);
}

TEST_F(TweakProgram, StartsWithDefaultsBesideAnUnreadableFile) {
    writeFile(sandbox.settings(), "no property list");
    RunningTweak tweak(command());
    EXPECT_THAT(tweak.errors(), HasSubstr("it is set aside as " + sandbox.settings().string() + ".unreadable"));
    EXPECT_EQ(askForSettings()["kSleepTime"], findSetting("kSleepTime")->byDefault);
    EXPECT_EQ(readFile(sandbox.settings().string() + ".unreadable"), "no property list");
}

TEST_F(TweakProgram, RefusesChangesWhenTheDiskIsFullAndGoesOn) {
    const RunningTweak tweak(
        {"/bin/sh", "-c", "ulimit -f 8; exec \"$@\"", "sh", LUMORA_TWEAK, "--settings", sandbox.settings()});
    EXPECT_THAT(change("kLSDateSubtitle", std::string(50'000, 'x')), HasSubstr("File too large"));
    EXPECT_THAT(tweak.errors(), HasSubstr("updateSettings refused: cannot write " + sandbox.settings().string()));
    EXPECT_EQ(askForSettings()["kLSDateSubtitle"], Value(""));
    EXPECT_EQ(change("kSleepTime", 30), "");
}

TEST_F(TweakProgram, TellsWrongUseFromHelp) {
    EXPECT_EQ(run({LUMORA_TWEAK, "--no-such-option"}).status, 2);
    EXPECT_EQ(run({LUMORA_TWEAK, "stray"}).status, 2);
    EXPECT_EQ(run({LUMORA_TWEAK, "--settings"}).status, 2);
    const Finished foreign = run(command({"--omit", "\xFF"}));
    EXPECT_EQ(foreign.status, 2);
    EXPECT_THAT(foreign.errors, HasSubstr("a key is UTF-8"));
    const Finished help = run({LUMORA_TWEAK, "--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* option :
         {"--root DIR", "--settings FILE", "--omit KEY", "--no-history", "--verbose", "--version", "--help"})
        EXPECT_THAT(help.output, HasSubstr(option));
    const Finished version = run({LUMORA_TWEAK, "--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, testing::StartsWith("lumora-tweak "));
}
