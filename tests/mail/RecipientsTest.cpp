#include "tests/mail/MailTest.h"

#include <map>

namespace {

using namespace tests;

TEST_F(MailTest, StaysToBeEditedWithoutAnAddress) {
    useSendmail("exit 0");
    send({" , ", "Subject", "Body"});
    EXPECT_THAT(problem(), HasSubstr("no address"));
    expectSent({"a@b.example", "Subject", "Body"});
}

TEST_F(MailTest, IsSentToNobodyWhenAnyRecipientIsNotUnderstood) {
    useRecorder();
    const std::map<std::string, std::string> lists = {
        {"a@b.example, and bob", "and bob"},
        {"a@b.example, bob", "bob"},
        {"a@b@c.example", "a@b@c.example"},
        {"a@b.example c@d.example", "a@b.example c@d.example"},
        {"friends: a@b.example, c@d.example;", "friends: a@b.example"},
        {"a@b.example, <c@d.example", "<c@d.example"},
        {"jürgen@b.example", "jürgen@b.example"},
        {"a@", "a@"},
        {"a@[127.0.0.1] (home)", "a@[127.0.0.1] (home)"},
        {"\"a@b\" <c@[127.0.0.1] (home)>", "\"a@b\" <c@[127.0.0.1] (home)>"},
        {"\"a\\\" <c@[127.0.0.1] (home)", "\"a\\\" <c@[127.0.0.1] (home)"},
    };
    for (const auto& [list, part] : lists) {
        send({list, "Subject", "Body"});
        EXPECT_EQ(problem(), "“" + part + "” is no address.");
    }
    EXPECT_THAT(home.filesIn(home.drafts()), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(home.path() / "mta.input"));
    expectSent();
}

TEST_F(MailTest, IsSentToAllRecipientsHoweverTheyAreSeparated) {
    useRecorder();
    expectSent({"a@b.example; \"Doe; J, \\\"\" <c@d.example>,, Jürgen <e@f.example> ;", "Subject", "Body"});
    EXPECT_THAT(home.argumentsOf("mta"), ElementsAre("-i", "--", "a@b.example", "c@d.example", "e@f.example"));
    for (const char* address : {"a@b.example", "<c@d.example>", "<e@f.example>"})
        EXPECT_THAT(home.inputOf("mta"), HasSubstr(address));
}

TEST_F(MailTest, IsSentToARecipientWhateverStandsInTheQuotesOfTheName) {
    useRecorder();
    expectSent({"\"a@b [x] (y)\" <c@d.example>, \"\\\"a@[b] (c)\" <e@f.example>", "Subject", "Body"});
    EXPECT_THAT(home.argumentsOf("mta"), ElementsAre("-i", "--", "c@d.example", "e@f.example"));
}

TEST_F(MailTest, KeepsRecipientsInADraftAsTheyWereTyped) {
    expectSaved({"a@b.example, and bob", "Later", "Not yet"});
    EXPECT_THAT(onlyDraft(), HasSubstr("To: a@b.example, and bob\n"));
}

} // namespace
