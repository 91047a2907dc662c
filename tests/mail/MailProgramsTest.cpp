#include "tests/mail/MailTest.h"

namespace {

using namespace tests;

TEST_F(MailTest, CanBeHandedToAKnownMailProgramThatIsRegistered) {
    home.addRecorder("thunderbird");
    EXPECT_FALSE(canSend());
    home.registerFor("mailto", "thunderbird.desktop", "thunderbird %u");
    EXPECT_TRUE(eventually(canSend)) << "what is registered later is noticed";
}

TEST_F(MailTest, CanBeHandedToAKnownProgramWhosePathIsQuoted) {
    std::filesystem::create_directory(home.path() / "bin/my mail");
    home.addRecorder("my mail/thunderbird");
    home.registerFor("mailto", "thunderbird.desktop",
                     '"' + (home.path() / "bin/my mail/thunderbird").string() + "\" %u");
    EXPECT_TRUE(canSend());
}

TEST_F(MailTest, CannotBeHandedToAProgramThatIsNotKnownToTakeAttachments) {
    home.addRecorder("other");
    home.registerFor("mailto", "other.desktop", "other %u");
    EXPECT_FALSE(canSend());
}

TEST_F(MailTest, CannotBeHandedToAKnownProgramInsideAnother) {
    home.addRecorder("sandbox");
    home.registerFor("mailto", "thunderbird.desktop", "sandbox run thunderbird %u");
    EXPECT_FALSE(canSend());
}

class MailProgramTest : public MailTest {
  protected:
    void use(const std::string& program, const std::string& desktopId) {
        home.addRecorder(program);
        home.registerFor("mailto", desktopId, program + " %u");
        attach(std::string("one\0two", 7), "log");
        attach("three", "dpkgl.log");
    }
    /// Where the files are that the program was handed, after a look at them.
    std::string folder() {
        const auto made = home.filesIn(home.path() / "tmp");
        EXPECT_THAT(made, SizeIs(1));
        if (made.empty()) return {};
        EXPECT_EQ(std::filesystem::status(made.front()).permissions(), std::filesystem::perms::owner_all);
        EXPECT_EQ(home.contentsOf(made.front() / "1/log"), std::string("one\0two", 7));
        EXPECT_EQ(home.contentsOf(made.front() / "2/dpkgl.log"), "three");
        return made.front();
    }
};

/// How a program takes a message and its files, whose folder is DIR there, or %DIR in an address.
struct Way {
    std::string program;
    std::string desktopId;
    std::vector<std::string> arguments;
};
void PrintTo(const Way& way, std::ostream* out) {
    *out << way.program;
}

struct MailProgramWay : MailProgramTest, testing::WithParamInterface<Way> {
    static std::string replaced(std::string text, const std::string& what, const std::string& by) {
        for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
            text.replace(at, what.size(), by);
        return text;
    }
};

TEST_P(MailProgramWay, HandsOverTheMessageAndItsFiles) {
    auto [program, desktopId, arguments] = GetParam();
    use(program, desktopId);
    send({"a@b.example", "What's, it?", "1 & 2\n\"3\""});
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved) << "somebody else sends it, or does not";
    EXPECT_THAT(onlyDraft(), HasSubstr("To: a@b.example\n")) << "what becomes of it there is unknown";
    const std::string files = folder();
    for (std::string& argument : arguments)
        argument = replaced(replaced(argument, "%DIR", replaced(files, "/", "%2F")), "DIR", files);
    EXPECT_EQ(home.argumentsOf(program), arguments);
}

const std::string kAddress = "mailto:a@b.example?subject=What%27s%2C%20it%3F&body=1%20%26%202%0A%223%22";

INSTANTIATE_TEST_SUITE_P(
    Known, MailProgramWay,
    testing::Values(
        Way{"thunderbird",
            "thunderbird.desktop",
            {"-compose", "format=2,to=a%40b.example,subject=What%27s%2C%20it%3F,body=1%20%26%202%0A%223%22,"
                         "attachment=file%3A%2F%2F%DIR%2F1%2Flog%2Cfile%3A%2F%2F%DIR%2F2%2Fdpkgl.log"}},
        Way{"evolution",
            "org.gnome.Evolution.desktop",
            {kAddress + "&attach=%DIR%2F1%2Flog&attach=%DIR%2F2%2Fdpkgl.log"}},
        Way{"kmail",
            "org.kde.kmail2.desktop",
            {"--composer", "--subject", "What's, it?", "--body", "1 & 2\n\"3\"", "--attach", "file://DIR/1/log",
             "--attach", "file://DIR/2/dpkgl.log", "--", "a@b.example"}},
        Way{"claws-mail", "claws-mail.desktop", {"--compose", kAddress, "--attach", "DIR/1/log", "DIR/2/dpkgl.log"}},
        Way{"sylpheed", "sylpheed.desktop", {"--compose", kAddress, "--attach", "DIR/1/log", "DIR/2/dpkgl.log"}}));

TEST_F(MailProgramTest, IsNotCalledWhereMailCanBeSent) {
    use("thunderbird", "thunderbird.desktop");
    useSendmail("cat > /dev/null");
    expectSent();
    EXPECT_THAT(home.filesIn(home.path() / "tmp"), IsEmpty());
}

TEST_F(MailProgramTest, LosesNothingWhenItDoesNotStart) {
    use("thunderbird", "thunderbird.desktop");
    std::ofstream(home.path() / "bin/thunderbird", std::ios::trunc) << "no program";
    expectKept("");
    EXPECT_THAT(home.filesIn(home.path() / "tmp"), IsEmpty()) << "nor is anything left that nobody will read";
}

TEST_F(MailProgramTest, KeepsWhatAProgramWasHandedThatFailsAtOnce) {
    home.addProgram("thunderbird", "exit 1");
    home.registerFor("mailto", "thunderbird.desktop", "thunderbird %u");
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    EXPECT_THAT(onlyDraft(), HasSubstr("Subject: Subject\n"));
    EXPECT_EQ(home.filesIn(home.drafts()).front(), composer->draft());
}

TEST_F(MailProgramTest, IsHandedFilesOfOneNameAndNoneOutsideOfTheirFolder) {
    use("sylpheed", "sylpheed.desktop");
    attach("again", "log");
    attach("out", "../../../../out");
    attach("up", "..");
    send({"A <a@b.example>; c@d.example", "Subject", "Body"});
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    const std::string files = folder();
    EXPECT_THAT(home.argumentsOf("sylpheed"),
                ElementsAre("--compose", "mailto:a@b.example,c@d.example?subject=Subject&body=Body", "--attach",
                            files + "/1/log", files + "/2/dpkgl.log", files + "/3/log", files + "/4/out",
                            files + "/5/attachment"));
    EXPECT_EQ(home.contentsOf(files + "/3/log"), "again");
    EXPECT_EQ(home.contentsOf(files + "/4/out"), "out");
}

} // namespace
