// Who holds a name: folders, modes, locks, dead sockets.

#include "platform/messaging/CFMessagePort.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/Process.h"
#include "tests/support/RawSocket.h"
#include "tests/support/ServedPort.h"

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace platform;
using namespace tests;

namespace {

struct PortListener : testing::Test {
    const PortsFolder folder;
};

CFMessagePortRef open(const std::string& name) {
    return CFMessagePortCreateLocal(name, [](auto&, auto, const auto& body) { return body; });
}

/// Why it does not open, beyond its path; empty for a port that does.
std::string obstacleTo(const std::string& name) {
    const auto port = openLocalPort(name, [](auto&, auto, const auto& body) { return body; });
    if (port) return {};
    const auto beginning = "cannot open the port " + (portsFolder() / name).string() + ": ";
    EXPECT_TRUE(port.error().starts_with(beginning)) << port.error();
    return port.error().substr(beginning.size());
}

mode_t modeOf(const std::filesystem::path& path) {
    struct stat status {};
    ::lstat(path.c_str(), &status);
    return status.st_mode & 07777;
}

CFMessagePortResult send(const std::string& name) {
    return CFMessagePortSendRequest(*CFMessagePortCreateRemote(name), 0, std::nullopt, 60, 60, nullptr);
}

std::vector<std::string> holder(const std::string& name) {
    return {LUMORA_BINARIES "/port_holder", name};
}

} // namespace

TEST_F(PortListener, MakesPrivateFoldersAndSocketsWhateverTheUmask) {
    for (const mode_t mask : {0U, 022U, 077U}) {
        SCOPED_TRACE(mask);
        const auto inside = folder.path() / "new" / std::to_string(mask);
        ::setenv("LUMORA_PORTS", inside.c_str(), 1);
        const auto former = ::umask(mask);
        const auto port = open("com.example/sub/port");
        ::umask(former);
        ASSERT_NE(port, nullptr);
        EXPECT_EQ(modeOf(inside), 0700U);
        EXPECT_EQ(modeOf(inside / "com.example"), 0700U);
        EXPECT_EQ(modeOf(inside / "com.example/sub"), 0700U);
        EXPECT_EQ(modeOf(inside / "com.example/sub/port"), 0600U);
        EXPECT_EQ(modeOf(inside / "com.example/sub/port.lock") & 077U, 0U);
    }
}

TEST_F(PortListener, RefusesFoldersThatOthersCanWrite) {
    ::chmod(folder.path().c_str(), 0770);
    EXPECT_EQ(open("port"), nullptr);
    ::chmod(folder.path().c_str(), 0700);
    ::mkdir(folder.socket("com.example").c_str(), 0700);
    ::chmod(folder.socket("com.example").c_str(), 0702);
    EXPECT_EQ(open("com.example/port"), nullptr);
    ::chmod(folder.socket("com.example").c_str(), 0700);
    EXPECT_NE(open("com.example/port"), nullptr);
}

TEST_F(PortListener, RefusesFoldersOfAnotherUser) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
    ASSERT_EQ(::chown(folder.path().c_str(), 65534, 65534), 0);
    EXPECT_EQ(open("port"), nullptr);
}

TEST_F(PortListener, RefusesFoldersThatAreSymbolicLinks) {
    const auto real = folder.path() / "real";
    const auto link = folder.path() / "link";
    std::filesystem::create_directory(real);
    ::chmod(real.c_str(), 0700);
    std::filesystem::create_directory_symlink(real, link);
    EXPECT_EQ(open("link/port"), nullptr);
    for (const char* ending : {"", "/", "/."}) {
        ::setenv("LUMORA_PORTS", (link.native() + ending).c_str(), 1);
        EXPECT_EQ(open("port"), nullptr) << ending;
    }
}

TEST_F(PortListener, RefusesANameThatIsTaken) {
    const ServedPort port("port", [](auto&, auto, const auto&) { return std::nullopt; });
    EXPECT_EQ(open("port"), nullptr);
    EXPECT_EQ(send("port"), kCFMessagePortSuccess) << "the first one goes on";
}

TEST_F(PortListener, RefusesANameThatAnotherProcessHolds) {
    Process other(holder("port"));
    other.write("open");
    ASSERT_EQ(other.read(), "opened");
    EXPECT_EQ(open("port"), nullptr);
    EXPECT_EQ(send("port"), kCFMessagePortSuccess);
    other.write("close");
    ASSERT_EQ(other.read(), "closed");
    EXPECT_NE(open("port"), nullptr);
}

TEST_F(PortListener, RefusesANameThatAProgramWithoutTheLockServes) {
    const auto other = RawSocket::listeningAt(folder.socket("port"), 0);
    EXPECT_EQ(open("port"), nullptr);
    EXPECT_EQ(open("port"), nullptr) << "the first attempt filled the backlog: a sign of life, too";
}

TEST_F(PortListener, LeavesFilesAloneThatAreNoSockets) {
    std::ofstream(folder.socket("port")) << "precious";
    EXPECT_EQ(open("port"), nullptr);
    EXPECT_EQ(std::filesystem::file_size(folder.socket("port")), 8U);
    std::filesystem::create_symlink(folder.socket("port"), folder.socket("other.lock"));
    EXPECT_EQ(open("other"), nullptr);
}

TEST_F(PortListener, SaysWhatIsInTheWay) {
    EXPECT_EQ(obstacleTo("port"), "");
    const auto held = open("held");
    EXPECT_EQ(obstacleTo("held"), "another process holds it");
    const auto other = RawSocket::listeningAt(folder.socket("served"));
    EXPECT_EQ(obstacleTo("served"), "another process holds it") << "by a program that knows nothing of the lock";
    std::ofstream(folder.socket("file")) << "precious";
    EXPECT_EQ(obstacleTo("file"), "its socket or lock file cannot be used");
    std::filesystem::create_directory(folder.socket("folder.lock"));
    EXPECT_EQ(obstacleTo("folder"), "its socket or lock file cannot be used");
    EXPECT_EQ(obstacleTo("file/port"), "its folder cannot be made, or is not a folder of yours alone");
    for (const std::string& none : {std::string(200, 'x'), std::string("../port")})
        EXPECT_EQ(obstacleTo(none), "its path is too long for a socket, or none at all");

    rlimit usual{};
    ::getrlimit(RLIMIT_NOFILE, &usual);
    const rlimit none{0, usual.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    const auto why = obstacleTo("port");
    ::setrlimit(RLIMIT_NOFILE, &usual);
    EXPECT_EQ(why, "not enough descriptors are left");
}

TEST_F(PortListener, TakesOverTheSocketOfAProcessThatWasKilled) {
    Process other(holder("port"));
    other.write("open");
    ASSERT_EQ(other.read(), "opened");
    other.kill();
    ASSERT_TRUE(std::filesystem::exists(folder.socket("port")));
    const ServedPort port("port", [](auto&, auto, const auto&) { return std::nullopt; });
    EXPECT_TRUE(port.isOpen());
    EXPECT_EQ(send("port"), kCFMessagePortSuccess);
}

TEST_F(PortListener, LeavesExactlyOneOfTwoStartersThatRaceOverADeadSocket) {
    const Process first(holder("port"));
    const Process second(holder("port"));
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        RawSocket::leaveDeadSocketAt(folder.socket("port"));
        first.write("open");
        second.write("open");
        const auto one = first.read();
        const auto two = second.read();
        ASSERT_TRUE((one == "opened" && two == "taken") || (one == "taken" && two == "opened")) << one << " " << two;
        ASSERT_EQ(send("port"), kCFMessagePortSuccess);
        (one == "opened" ? first : second).write("close");
        ASSERT_EQ((one == "opened" ? first : second).read(), "closed");
        ASSERT_FALSE(std::filesystem::exists(folder.socket("port")));
    }
}

TEST_F(PortListener, RemovesItsSocketFileWithTheLastReference) {
    auto port = open("port");
    const auto source = CFMessagePortCreateRunLoopSource(port);
    port = nullptr;
    EXPECT_TRUE(std::filesystem::exists(folder.socket("port"))) << "its source still holds it";
}

TEST_F(PortListener, LeavesASocketFileAloneThatReplacedItsOwn) {
    auto port = open("port");
    std::filesystem::remove(folder.socket("port"));
    const auto other = RawSocket::listeningAt(folder.socket("port"));
    port = nullptr;
    EXPECT_TRUE(std::filesystem::exists(folder.socket("port")));
}

TEST_F(PortListener, PassesNoDescriptorOnToOtherPrograms) {
    const ServedPort port("port", [](auto&, auto, const auto&) { return std::nullopt; });
    const auto client = RawSocket::connectedTo(folder.socket("port"));
    client.send(frameWithoutBody());
    ASSERT_EQ(client.receive(16).size(), 16U);
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        const int number = std::stoi(entry.path().filename());
        std::error_code gone;
        const auto target = std::filesystem::read_symlink(entry.path(), gone).native();
        const bool ours = target.starts_with("socket:") || target.starts_with("anon_inode:") ||
                          target.starts_with(folder.path().native());
        EXPECT_TRUE(!ours || (::fcntl(number, F_GETFD) & FD_CLOEXEC) != 0) << target;
    }
}
