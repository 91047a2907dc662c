#include "tests/mail/MailTest.h"

#include <sys/stat.h>

namespace {

using namespace platform;
using namespace tests;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

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
        struct stat facts {};
        EXPECT_EQ(::stat(made.front().c_str(), &facts), 0);
        EXPECT_EQ(facts.st_mode & 0777U, 0700U);
        EXPECT_EQ(home.contentsOf(made.front() / "1/log"), std::string("one\0two", 7));
        EXPECT_EQ(home.contentsOf(made.front() / "2/dpkgl.log"), "three");
        return made.front();
    }
    void handOver() {
        send({"a@b.example", "What's, it?", "1 & 2\n\"3\""});
        EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved) << "somebody else sends it, or does not";
        EXPECT_THAT(onlyDraft(), HasSubstr("To: a@b.example\n")) << "nobody knows what becomes of it there";
    }
    static std::string replaced(std::string text, const std::string& what, const std::string& by) {
        for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
            text.replace(at, what.size(), by);
        return text;
    }
    std::string address = "mailto:a@b.example?subject=What%27s%2C%20it%3F&body=1%20%26%202%0A%223%22";
};

TEST_F(MailProgramTest, ThunderbirdTakesAListWithEverythingEncoded) {
    use("thunderbird", "thunderbird.desktop");
    handOver();
    const std::string arguments = "format=2,to=a%40b.example,subject=What%27s%2C%20it%3F,body=1%20%26%202%0A%223%22,"
                                  "attachment=file%3A%2F%2FDIR%2F1%2Flog%2Cfile%3A%2F%2FDIR%2F2%2Fdpkgl.log";
    EXPECT_THAT(home.argumentsOf("thunderbird"),
                ElementsAre("-compose", replaced(arguments, "DIR", replaced(folder(), "/", "%2F"))));
}

TEST_F(MailProgramTest, EvolutionTakesAnAddressWithTheFilesInIt) {
    use("evolution", "org.gnome.Evolution.desktop");
    handOver();
    const std::string files = replaced(folder(), "/", "%2F");
    EXPECT_THAT(home.argumentsOf("evolution"),
                ElementsAre(address + "&attach=" + files + "%2F1%2Flog&attach=" + files + "%2F2%2Fdpkgl.log"));
}

TEST_F(MailProgramTest, KMailTakesOptions) {
    use("kmail", "org.kde.kmail2.desktop");
    handOver();
    const std::string files = "file://" + folder();
    EXPECT_THAT(home.argumentsOf("kmail"),
                ElementsAre("--composer", "--subject", "What's, it?", "--body", "1 & 2\n\"3\"", "--attach",
                            files + "/1/log", "--attach", files + "/2/dpkgl.log", "--", "a@b.example"));
}

TEST_F(MailProgramTest, ClawsMailTakesAnAddressAndFiles) {
    use("claws-mail", "claws-mail.desktop");
    handOver();
    const std::string files = folder();
    EXPECT_THAT(home.argumentsOf("claws-mail"),
                ElementsAre("--compose", address, "--attach", files + "/1/log", files + "/2/dpkgl.log"));
}

TEST_F(MailProgramTest, SylpheedTakesAnAddressAndFiles) {
    use("sylpheed", "sylpheed.desktop");
    handOver();
    const std::string files = folder();
    EXPECT_THAT(home.argumentsOf("sylpheed"),
                ElementsAre("--compose", address, "--attach", files + "/1/log", files + "/2/dpkgl.log"));
}

TEST_F(MailProgramTest, IsNotCalledWhereMailCanBeSent) {
    use("thunderbird", "thunderbird.desktop");
    useSendmail("cat > /dev/null");
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    EXPECT_THAT(home.filesIn(home.path() / "tmp"), IsEmpty());
}

TEST_F(MailProgramTest, LosesNothingWhenItDoesNotStart) {
    use("thunderbird", "thunderbird.desktop");
    std::ofstream(home.path() / "bin/thunderbird", std::ios::trunc) << "no program";
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultFailed);
    EXPECT_THAT(onlyDraft(), HasSubstr("Subject: Subject\n"));
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
