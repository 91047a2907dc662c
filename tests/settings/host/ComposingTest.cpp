#include "platform/mail/MFMailComposeViewController.h"
#include "platform/preferences/PSListController.h"
#include "settings/host/Host.h"
#include "tests/support/Home.h"
#include "tests/support/MailedFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <condition_variable>
#include <cstdlib>
#include <future>
#include <mutex>

namespace {

using namespace platform;
using namespace settings;
using namespace tests;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// A page with a button that presents a message with one attachment, a field and a switch.
class MailPage final : public PSListController, public MFMailComposeViewControllerDelegate {
  public:
    static inline std::vector<MFMailComposeResult> results; ///< main thread
    static inline std::vector<Value> values;                ///< that the page took; main thread

    PSSpecifierList specifiers() override {
        if (_specifiers) return _specifiers;
        std::vector<PSSpecifierRef> rows;
        for (const PSCellType cell : {PSButtonCell, PSEditTextCell, PSSwitchCell})
            rows.push_back(PSSpecifier::preferenceSpecifierNamed("Row", this, selector(&MailPage::setValue), nullptr,
                                                                 {}, cell, false));
        rows.front()->action = selector(&MailPage::press);
        _specifiers = std::make_shared<const std::vector<PSSpecifierRef>>(std::move(rows));
        return _specifiers;
    }
    void setValue(const Value& value, PSSpecifier& /*row*/) { values.push_back(value); }
    void press(PSSpecifier& /*sender*/) {
        const auto composer = make<MFMailComposeViewController>();
        composer->setMailComposeDelegate(std::static_pointer_cast<MailPage>(shared_from_this()));
        composer->setToRecipients({"a@b.example", "c@d.example"});
        composer->setSubject("Subject");
        composer->setMessageBody("Body", false);
        composer->addAttachmentData(mailedFile(std::string(std::getenv("HOME")) + "/log", std::string(1500, 'x')),
                                    "text/plain", "log");
        presentViewController(composer, true, nullptr);
    }
    void mailComposeController(MFMailComposeViewController& controller, MFMailComposeResult result,
                               const NSError* /*error*/) override {
        results.push_back(result);
        controller.dismissViewControllerAnimated(result != MFMailComposeResultCancelled, nullptr);
    }
};
PLATFORM_CLASS(MailPage)

class ComposingTest : public ::testing::Test {
  protected:
    ComposingTest() {
        perform([](Navigation& navigation) {
            MailPage::results.clear();
            MailPage::values.clear();
            navigation.open(NSClassFromString("MailPage"), "Mail");
        });
        tapButton();
    }
    /// Waits until the main thread has done it.
    void perform(const std::function<void(Navigation&)>& work) {
        std::promise<void> done;
        host.post([&](Navigation& navigation) {
            work(navigation);
            done.set_value();
        });
        awaited(done.get_future(), "the turn of the main thread");
    }
    void tapButton() {
        perform([this](Navigation& navigation) { navigation.handle(top().id, RowTapped{0}); });
    }
    void goBack() {
        perform([this](Navigation& navigation) { navigation.back(top().id); });
    }
    void act(ComposerAction action, const MailText& text = {"a@b.example", "Edited", "Text"}) {
        perform([&](Navigation& navigation) { navigation.handle(top().id, Composed{composer()->id, action, text}); });
    }
    PageSnapshot top() {
        const std::lock_guard lock(mutex);
        return *shown.back().pages.back();
    }
    std::shared_ptr<const ComposerSnapshot> composer() { return top().composer; }
    bool waitUntil(const std::function<bool(const ComposerSnapshot*)>& holds) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, kLongEnough, [&] { return holds(shown.back().pages.back()->composer.get()); });
    }
    bool waitUntilItIsGone() {
        return waitUntil([](const ComposerSnapshot* message) { return !message; });
    }
    bool waitForProblem(const std::string& part) {
        return waitUntil([&](const ComposerSnapshot* message) {
            return message && message->problem.find(part) != std::string::npos;
        });
    }
    /// Ends the program right after these actions: it says that it keeps the message, and leaves one draft.
    void leaveAfter(const std::vector<ComposerAction>& actions, const MailText& text) {
        testing::internal::CaptureStderr();
        host.post([actions, text, page = top().id, id = composer()->id](Navigation& navigation) {
            for (const ComposerAction action : actions)
                navigation.handle(page, Composed{id, action, text});
        });
        host.finish(kLongEnough);
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("kept as a draft"));
        ASSERT_THAT(Home::filesIn(home.drafts()), SizeIs(1));
        EXPECT_THAT(Home::contentsOf(Home::filesIn(home.drafts()).front()), HasSubstr("Subject: Edited\n"));
    }
    std::vector<MFMailComposeResult> results() {
        std::vector<MFMailComposeResult> copy;
        perform([&](Navigation&) { copy = MailPage::results; });
        return copy;
    }

    Home home;
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<StackSnapshot> shown;
    /// Never destroyed, as in the program: the main thread goes on.
    static inline auto& kept = *new std::vector<Host*>;
    Host& host = *kept.emplace_back(new Host([this](StackSnapshot stack) {
        const std::lock_guard lock(mutex);
        shown.push_back(std::move(stack));
        changed.notify_all();
    }));
};

TEST_F(ComposingTest, ShowsTheMessageThatAButtonPresents) {
    ASSERT_NE(composer(), nullptr);
    EXPECT_EQ(composer()->text, (MailText{"a@b.example, c@d.example", "Subject", "Body"}));
    ASSERT_THAT(composer()->attachments, SizeIs(1));
    EXPECT_EQ(composer()->attachments.front().name, "log");
    EXPECT_EQ(composer()->attachments.front().size, 1500U);
    EXPECT_FALSE(composer()->working);
}

TEST_F(ComposingTest, IsGoneOnceCancelledAndTellsWhetherToAnimateComingAndGoing) {
    EXPECT_TRUE(top().presentsAnimated);
    act(ComposerAction::cancel);
    EXPECT_FALSE(top().presentsAnimated);
    EXPECT_EQ(composer(), nullptr);
    EXPECT_THAT(results(), ElementsAre(MFMailComposeResultCancelled));
}

TEST_F(ComposingTest, KeepsShowingTheMessageWhenThePageIsReadAgain) {
    const auto id = composer()->id;
    perform([](Navigation& navigation) { navigation.setContentSize({500, 500}); });
    tapButton();
    ASSERT_NE(composer(), nullptr);
    EXPECT_EQ(composer()->id, id) << "one message at a time";
}

TEST_F(ComposingTest, KeepsEventsFromThePageBehind) {
    perform([this](Navigation& navigation) {
        navigation.open(NSClassFromString("MailPage"), "Another");
        navigation.handle(top().id, RowTapped{0});
    });
    goBack();
    EXPECT_EQ(top().title, "Another");
    act(ComposerAction::cancel);
    goBack();
    EXPECT_EQ(top().title, "Mail");
}

TEST_F(ComposingTest, HandsThePageBehindOnlyWhatWasTypedBefore) {
    perform([this](Navigation& navigation) {
        navigation.handle(top().id, ValueChanged{2, true});
        navigation.handle(top().id, ValueChanged{1, "typed"});
    });
    EXPECT_THAT(MailPage::values, ElementsAre(Value("typed")));
    EXPECT_NE(composer(), nullptr);
}

TEST_F(ComposingTest, ShowsThatAMessageIsBeingSentUntilItIs) {
    const std::string gate = (home.path() / "gate").string();
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta", "read go < " + gate).c_str(), 1);
    act(ComposerAction::send);
    ASSERT_NE(composer(), nullptr);
    EXPECT_TRUE(composer()->working);
    std::ofstream(gate) << "go\n";
    EXPECT_TRUE(waitUntilItIsGone());
    EXPECT_THAT(home.inputOf("mta"), HasSubstr("Subject: Edited\n"));
    EXPECT_THAT(results(), ElementsAre(MFMailComposeResultSent));
}

TEST_F(ComposingTest, SaysWhatWentWrongAndWhereTheDraftIsAndGoesOn) {
    ::setenv("LUMORA_SENDMAIL", home.addProgram("mta", "echo 'no route' >&2; exit 75").c_str(), 1);
    for (int attempt = 1; attempt <= 2; ++attempt) {
        act(ComposerAction::send, {"a@b.example", "Attempt " + std::to_string(attempt), "Text"});
        EXPECT_TRUE(waitForProblem("no route"));
        const auto drafts = Home::filesIn(home.drafts());
        ASSERT_THAT(drafts, SizeIs(1)) << "a later one replaces that of an earlier try";
        EXPECT_EQ(composer()->draft, drafts.front());
        EXPECT_THAT(results(), IsEmpty());
    }
    ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta").c_str(), 1);
    act(ComposerAction::send, {"a@b.example", "At last", "Text"});
    EXPECT_TRUE(waitUntilItIsGone());
    EXPECT_THAT(results(), ElementsAre(MFMailComposeResultSent));
    EXPECT_THAT(Home::filesIn(home.drafts()), IsEmpty());
}

TEST_F(ComposingTest, ThrowsTheDraftOfAFailedTryAwayWithTheMessage) {
    ::setenv("LUMORA_SENDMAIL", home.addProgram("mta", "exit 75").c_str(), 1);
    testing::internal::CaptureStderr();
    act(ComposerAction::send);
    EXPECT_TRUE(waitForProblem("75"));
    act(ComposerAction::cancel);
    EXPECT_TRUE(waitUntilItIsGone());
    EXPECT_THAT(results(), ElementsAre(MFMailComposeResultCancelled));
    EXPECT_THAT(Home::filesIn(home.drafts()), IsEmpty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ComposingTest, ShowsWhyAMessageIsStillThereAndSaysSoNowhereElse) {
    testing::internal::CaptureStderr();
    act(ComposerAction::send, {"", "Edited", "Text"});
    EXPECT_TRUE(waitForProblem("address"));
    EXPECT_FALSE(composer()->working);
    EXPECT_THAT(results(), IsEmpty());
    std::ofstream(home.path() / "data/lumora") << "in the way";
    act(ComposerAction::save);
    EXPECT_TRUE(waitForProblem("folder"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ComposingTest, KeepsAMessageThatIsRefusedAfterItsUserHasLeft) {
    leaveAfter({ComposerAction::send, ComposerAction::leave}, {"bob", "Edited", "Text"});
}

TEST_F(ComposingTest, SaysThatAMessageIsLostWhenItsUserHasLeft) {
    std::ofstream(home.path() / "data/lumora") << "in the way";
    testing::internal::CaptureStderr();
    act(ComposerAction::leave);
    EXPECT_TRUE(waitUntilItIsGone());
    EXPECT_THAT(results(), ElementsAre(MFMailComposeResultFailed));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("neither sent nor kept: cannot make the folder"));
}

TEST_F(ComposingTest, IgnoresWhatIsDoneToAMessageThatIsGone) {
    const auto page = top().id;
    const auto id = composer()->id;
    act(ComposerAction::cancel);
    perform([&](Navigation& navigation) { navigation.handle(page, Composed{id, ComposerAction::cancel, {}}); });
    tapButton();
    perform([&](Navigation& navigation) { navigation.handle(page, Composed{id, ComposerAction::cancel, {}}); });
    EXPECT_NE(composer(), nullptr) << "another one";
    EXPECT_THAT(results(), SizeIs(1));
}

TEST_F(ComposingTest, FinishesADraftAndSaysWhereItIsBeforeTheProgramLeaves) {
    leaveAfter({ComposerAction::save}, {"a@b.example", "Edited", "Text"});
}

} // namespace
