#include "platform/messaging/Dispatch.h"
#include "platform/ui/Undoable.h"
#include "tests/settings/host/NavigationTest.h"

#include <gmock/gmock.h>

#include <future>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace tests;
using ::testing::ElementsAre;
using ::testing::Pair;
using Fate = Navigation::Undone::Fate;

/// A view that stores where it was touched last.
class UndoableView : public UIView, public Undoable {
  public:
    static inline Value stored;
    static inline std::vector<Value> saved;

    void touchesBegan(const UITouches& touches, const UIEvent& /*event*/) override {
        save(touches.front()->locationInView(*this).x);
    }
    void touchesMoved(const UITouches& touches, const UIEvent& event) override { touchesBegan(touches, event); }
    [[nodiscard]] std::string undoKey() const override { return "place"; }
    [[nodiscard]] State undoState() const override { return {stored, {}}; }
    void restore(const State& state) override { save(state.stored); }

  private:
    static void save(const Value& value) {
        stored = value;
        saved.push_back(value);
    }
};

class UndoablePage : public PSListController {
  public:
    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        setView(make<UndoableView>(view()->frame()));
    }
};
PLATFORM_CLASS(UndoablePage)

/// A page with a link to the one of rows.
class DoorPage : public PSListController {
  public:
    PSSpecifierList specifiers() override {
        if (!_specifiers)
            _specifiers = std::make_shared<const std::vector<PSSpecifierRef>>(
                1,
                PSSpecifier::preferenceSpecifierNamed("Rows", this, nullptr, nullptr, "RowsPage", PSLinkCell, false));
        return _specifiers;
    }
};
PLATFORM_CLASS(DoorPage)

struct UndoTest : NavigationTest {
    UndoTest() {
        UndoableView::stored = 0.0;
        UndoableView::saved.clear();
    }
    void change(std::size_t row, const Value& value) { handle(ValueChanged{row, value}); }
    void touch(UITouchPhase phase, double x, std::int64_t finger = 1) { handle(Touched{{{finger, phase, {x, 5}}}}); }
    [[nodiscard]] std::string undoTitle() const { return shown.back().undo.undo.value_or("–"); }
    [[nodiscard]] std::string redoTitle() const { return shown.back().undo.redo.value_or("–"); }
};

TEST_F(UndoTest, HasNothingToTakeBackAtFirst) {
    openRoot();
    EXPECT_EQ(navigation.undo().fate, Fate::nothing);
    EXPECT_EQ(navigation.redo().fate, Fate::nothing);
    EXPECT_EQ(undoTitle(), "–");
}

TEST_F(UndoTest, TakesAChangeBackAndDoesItAgainByTheRowsSetOperationOnceEach) {
    openRoot({{"switch", false}});
    change(RowsPage::Switch, true);
    EXPECT_EQ(undoTitle(), "Switch");
    EXPECT_EQ(navigation.undo().where.row, RowsPage::Switch);
    EXPECT_EQ(top().rows[RowsPage::Switch].value, Value(false));
    EXPECT_EQ(undoTitle(), "–");
    EXPECT_EQ(redoTitle(), "Switch");
    EXPECT_EQ(navigation.redo().fate, Fate::done);
    EXPECT_THAT(RowsPage::changes,
                ElementsAre(Pair("switch", Value(true)), Pair("switch", Value(false)), Pair("switch", Value(true))));
    EXPECT_EQ(redoTitle(), "–");
}

TEST_F(UndoTest, CountsNoChangeWhereTheValueStays) {
    openRoot({{"switch", true}});
    change(RowsPage::Switch, true);
    EXPECT_EQ(undoTitle(), "–");
}

TEST_F(UndoTest, TellsThatAValueWhichWasNeverSetCannotBePutBackAndGoesOnToTheChangeBefore) {
    openRoot({{"slider", 1.0}});
    change(RowsPage::Slider, 1.5);
    change(RowsPage::Switch, true);
    EXPECT_EQ(navigation.undo().fate, Fate::neverSet);
    EXPECT_EQ(RowsPage::changes.size(), 2U);
    EXPECT_EQ(navigation.undo().fate, Fate::done);
    EXPECT_EQ(RowsPage::values["slider"], Value(1.0));
}

TEST_F(UndoTest, PutsTheDefaultBackWhereThereWasNoValue) {
    openRoot({{"slider", 1.0}});
    navigation.setDefaults(Dictionary{{"switch", false}});
    change(RowsPage::Switch, true);
    EXPECT_EQ(navigation.undo().fate, Fate::done);
    EXPECT_THAT(RowsPage::changes, ElementsAre(Pair("switch", Value(true)), Pair("switch", Value(false))));
    EXPECT_EQ(navigation.redo().fate, Fate::done);
    navigation.revert(top().id, {RowsPage::Switch}, false);
    EXPECT_EQ(RowsPage::values["switch"], Value(false));
}

TEST_F(UndoTest, ShowsDefaultsWithRowsButOfNoPasscode) {
    openRoot({{"switch", true}});
    navigation.setDefaults(Dictionary{{"switch", false}, {"options", 5}, {"secret", "1234"}});
    EXPECT_EQ(top().rows[RowsPage::Switch].byDefault, Value(false));
    EXPECT_EQ(top().rows[RowsPage::Options].byDefault, Value(5));
    EXPECT_FALSE(top().rows[RowsPage::Secret].byDefault);
    EXPECT_FALSE(top().rows[RowsPage::Slider].byDefault);
    change(RowsPage::Switch, false);
    EXPECT_EQ(top().rows[RowsPage::Switch].byDefault, Value(false));
}

TEST_F(UndoTest, TakesAResetBackByItself) {
    openRoot({{"slider", 1.0}, {"options", 10}});
    navigation.setDefaults(Dictionary{{"slider", 0.75}, {"options", 5}});
    change(RowsPage::Slider, 1.5);
    handle(ValueChanged{RowsPage::Slider, 0.75, true});
    navigation.undo();
    EXPECT_EQ(RowsPage::values["slider"], Value(1.5));
    handle(ValueChanged{RowsPage::Options, 5, true});
    EXPECT_EQ(top().rows[RowsPage::Options].valueTitle, "5");
    navigation.undo();
    EXPECT_EQ(RowsPage::values["options"], Value(10));
}

TEST_F(UndoTest, TakesSettingsThatWereAppliedTogetherBackAtOnceWithoutTheRefusedOnes) {
    std::vector<std::pair<std::string, Value>> sent;
    navigation.setSender([&](const std::vector<SettingChange>& changes) {
        Sent outcome;
        for (const SettingChange& change : changes) {
            sent.emplace_back(change.key, change.after);
            if (change.key == "bad") {
                outcome.refused.push_back({change.key, "no"});
                continue;
            }
            RowsPage::values[change.key] = change.after;
            outcome.made.push_back(change);
        }
        return outcome;
    });
    openRoot({{"switch", true}});
    navigation.setDefaults(Dictionary{{"other", 5}});
    const Sent outcome = navigation.apply("Quiet", {{"switch", true, false}, {"bad", 1, 2}, {"other", nullptr, 7}});
    EXPECT_EQ(outcome.made.size(), 2U);
    EXPECT_EQ(top().rows[RowsPage::Switch].value, Value(false)) << "an open page shows it";
    EXPECT_EQ(undoTitle(), "Quiet");
    sent.clear();
    EXPECT_EQ(navigation.undo().fate, Fate::done);
    EXPECT_THAT(sent, ElementsAre(Pair("switch", Value(true)), Pair("other", Value(5))));
    EXPECT_EQ(undoTitle(), "–");
    EXPECT_EQ(navigation.redo().fate, Fate::done);
    EXPECT_EQ(RowsPage::values["other"], Value(7));
}

TEST_F(UndoTest, ForgetsWhatTheTweakRefusesToTakeBackAndKeepsWhatItDoesNotAnswer) {
    std::string refused;
    std::string unanswered;
    navigation.setSender([&](const std::vector<SettingChange>& changes) {
        Sent outcome;
        for (const SettingChange& change : changes) {
            if (change.key == unanswered) {
                outcome.fault = "no answer";
                break;
            }
            if (change.key == refused)
                outcome.refused.push_back({change.key, "no"});
            else
                outcome.made.push_back(change);
        }
        return outcome;
    });
    openRoot();
    navigation.apply("First", {{"a", 1, 2}});
    navigation.apply("Quiet", {{"a", 2, 3}, {"b", 1, 2}, {"c", 1, 2}});
    unanswered = "a";
    EXPECT_EQ(navigation.undo().fate, Fate::refused);
    EXPECT_EQ(undoTitle(), "Quiet");
    EXPECT_EQ(redoTitle(), "–") << "nothing of it was taken back";
    refused = "b";
    unanswered = "c";
    EXPECT_EQ(navigation.undo().fate, Fate::refused);
    EXPECT_EQ(undoTitle(), "Quiet") << "of which c can still be taken back";
    EXPECT_EQ(redoTitle(), "Quiet");
    refused = "c";
    unanswered.clear();
    EXPECT_EQ(navigation.undo().why, "no");
    EXPECT_EQ(undoTitle(), "First") << "it would be refused each time";
    refused = "a";
    EXPECT_EQ(navigation.redo().fate, Fate::refused);
    EXPECT_EQ(redoTitle(), "–");
    EXPECT_EQ(undoTitle(), "First") << "what was refused is not offered to be taken back";
}

TEST_F(UndoTest, IsAsItWasWhenTheTweakWent) {
    openRoot({{"switch", false}, {"slider", 1.0}, {"secret", "a"}});
    change(RowsPage::Slider, 1.5);
    navigation.setTweakGone(true);
    change(RowsPage::Switch, true);
    EXPECT_EQ(undoTitle(), "Switch") << "which is shown";
    navigation.undo();
    navigation.undo();
    EXPECT_EQ(redoTitle(), "slider");
    navigation.setTweakGone(false);
    EXPECT_EQ(undoTitle(), "slider") << "which the tweak has, since nothing has reached it";
    EXPECT_EQ(redoTitle(), "–");
    change(RowsPage::Secret, "b");
    EXPECT_EQ(undoTitle(), "Passcode");
}

TEST_F(UndoTest, SendsNothingWhileMessagesOfPagesAreOnTheirWay) {
    int sent = 0;
    navigation.setSender([&](const std::vector<SettingChange>& changes) {
        ++sent;
        return Sent{.made = changes};
    });
    openRoot();
    navigation.apply("Quiet", {{"a", 1, 2}});
    std::promise<void> held;
    dispatch_async(dispatch_get_global_queue(0, 0), [over = held.get_future().share()] { over.wait(); });
    EXPECT_EQ(navigation.undo().fate, Fate::refused);
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(undoTitle(), "Quiet");
    held.set_value();
    EXPECT_EQ(navigation.undo().fate, Fate::done);
    EXPECT_EQ(sent, 2);
}

TEST_F(UndoTest, ForgetsWhatWasUndoneAtTheNextChange) {
    openRoot({{"switch", false}, {"secret", "a"}});
    change(RowsPage::Switch, true);
    navigation.undo();
    change(RowsPage::Secret, "b");
    EXPECT_EQ(navigation.redo().fate, Fate::nothing);
    EXPECT_EQ(undoTitle(), "Passcode");
}

TEST_F(UndoTest, TakesTheStepsOfOneSliderBackAtOnce) {
    openRoot({{"slider", 1.0}});
    for (const double number : {1.1, 1.2, 1.3})
        change(RowsPage::Slider, number);
    navigation.undo();
    EXPECT_EQ(RowsPage::values["slider"], Value(1.0));
    EXPECT_EQ(undoTitle(), "–");
}

TEST_F(UndoTest, TakesAnOptionBackInItsListWhileThatIsOpenAndAfterwardsOnItsPage) {
    openRoot({{"options", 5}});
    tap(RowsPage::Options);
    tap(2);
    EXPECT_EQ(undoTitle(), "Options");
    navigation.undo();
    EXPECT_EQ(depth(), 2U);
    EXPECT_TRUE(top().rows[1].marked);
    navigation.redo();
    goBack();
    EXPECT_EQ(top().rows[RowsPage::Options].value, Value(10));
    EXPECT_EQ(navigation.undo().where.row, RowsPage::Options);
    EXPECT_EQ(top().rows[RowsPage::Options].value, Value(5));
}

TEST_F(UndoTest, TakesTheChoicesOfOneListBackOneByOne) {
    openRoot({{"options", 5}});
    tap(RowsPage::Options);
    tap(2);
    tap(3);
    EXPECT_EQ(shown.back().pages.front()->rows[RowsPage::Options].value, Value(3600));
    navigation.undo();
    EXPECT_EQ(RowsPage::values["options"], Value(10));
    navigation.undo();
    EXPECT_EQ(RowsPage::values["options"], Value(5));
}

TEST_F(UndoTest, ForgetsTheStepsOfASliderThatIsWhereItWas) {
    openRoot({{"slider", 1.0}});
    change(RowsPage::Slider, 1.5);
    change(RowsPage::Slider, 1.0);
    EXPECT_EQ(undoTitle(), "–");
}

TEST_F(UndoTest, GoesBackToThePageThatIsOpenBelow) {
    openRoot({{"switch", false}});
    change(RowsPage::Switch, true);
    const std::uint64_t root = top().id;
    tap(RowsPage::Hosted);
    const auto undone = navigation.undo();
    EXPECT_EQ(undone.where, (Landed{root, RowsPage::Switch, false}));
    EXPECT_EQ(depth(), 1U);
}

TEST_F(UndoTest, OpensThePageAgainThatWasLeft) {
    ASSERT_TRUE(open("DoorPage"));
    RowsPage::values["switch"] = false;
    tap(0);
    change(RowsPage::Switch, true);
    goBack();
    const auto undone = navigation.undo();
    EXPECT_EQ(undone.where, (Landed{top().id, RowsPage::Switch, false}));
    EXPECT_EQ(top().className, "RowsPage");
    EXPECT_EQ(RowsPage::values["switch"], Value(false));
}

TEST_F(UndoTest, TakesAWholeTouchBackAtOnceWhateverFingersTookPart) {
    ASSERT_TRUE(open("UndoablePage"));
    touch(UITouchPhase::began, 10);
    touch(UITouchPhase::began, 20, 2);
    touch(UITouchPhase::ended, 10);
    touch(UITouchPhase::moved, 30, 2);
    EXPECT_EQ(undoTitle(), "–");
    touch(UITouchPhase::ended, 30, 2);
    EXPECT_NE(undoTitle(), "–");
    UndoableView::saved.clear();
    navigation.undo();
    navigation.redo();
    EXPECT_THAT(UndoableView::saved, ElementsAre(Value(0.0), Value(30.0)));
}

TEST_F(UndoTest, EndsATouchThatIsUnderWayBeforeItTakesItBack) {
    ASSERT_TRUE(open("UndoablePage"));
    touch(UITouchPhase::began, 10);
    navigation.undo();
    EXPECT_EQ(UndoableView::stored, Value(0.0));
}

TEST_F(UndoTest, TellsWhenThePageIsGoneAndHasNoWay) {
    openRoot();
    ASSERT_TRUE(open("UndoablePage"));
    touch(UITouchPhase::began, 10);
    touch(UITouchPhase::ended, 10);
    goBack();
    EXPECT_EQ(navigation.undo().fate, Fate::gone);
    EXPECT_EQ(navigation.undo().fate, Fate::nothing);
}

TEST_F(UndoTest, RevertsRowsToWhatTheyWereWhenThePageWasOpenedAsOneChange) {
    openRoot({{"switch", false}, {"secret", "a"}, {"options", 5}});
    change(RowsPage::Switch, true);
    change(RowsPage::Secret, "b");
    change(RowsPage::Slider, 1.5); // which was never set
    navigation.revert(top().id, {RowsPage::Switch, RowsPage::Slider, RowsPage::Secret}, false);
    EXPECT_EQ(RowsPage::values["switch"], Value(false));
    EXPECT_EQ(RowsPage::values["secret"], Value("a"));
    EXPECT_EQ(RowsPage::values["slider"], Value(1.5));
    EXPECT_EQ(undoTitle(), "Root");
    navigation.undo();
    EXPECT_EQ(RowsPage::values["switch"], Value(true));
    EXPECT_EQ(RowsPage::values["secret"], Value("b"));
    navigation.redo();
    EXPECT_EQ(RowsPage::values["secret"], Value("a"));
}

TEST_F(UndoTest, TellsWhetherAViewIsAsItWasWhenThePageWasOpenedAndRevertsIt) {
    ASSERT_TRUE(open("UndoablePage"));
    touch(UITouchPhase::began, 10);
    touch(UITouchPhase::ended, 10);
    EXPECT_EQ(top().viewChange->now, Value(10.0));
    navigation.revert(top().id, {}, true);
    EXPECT_EQ(UndoableView::stored, Value(0.0));
    EXPECT_FALSE(top().viewChange);
    navigation.undo();
    EXPECT_EQ(top().viewChange->before, Value(0.0));
}

/// Ten thousand random steps leave the page as a model of two lists of values has it.
TEST_F(UndoTest, AgreesWithAModelOverRandomSteps) {
    openRoot({{"switch", false}, {"secret", "0"}, {"options", 5}});
    struct Step {
        std::string key;
        Value before;
        Value after;
    };
    std::vector<Step> done;
    std::vector<Step> undone;
    std::map<std::string, Value> model = RowsPage::values;
    std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same steps each time
    for (int step = 0; step < 10'000; ++step) {
        const auto kind = random() % 4;
        if (kind == 0 && !done.empty()) {
            navigation.undo();
            model[done.back().key] = done.back().before;
            undone.push_back(done.back());
            done.pop_back();
        } else if (kind == 1 && !undone.empty()) {
            navigation.redo();
            model[undone.back().key] = undone.back().after;
            done.push_back(undone.back());
            undone.pop_back();
        } else {
            const bool isSwitch = random() % 2 == 0;
            const std::string key = isSwitch ? "switch" : "secret";
            const Value value = isSwitch ? Value(random() % 2 == 0) : Value(std::to_string(random() % 5));
            change(isSwitch ? RowsPage::Switch : RowsPage::Secret, value);
            if (value == model[key]) continue;
            done.push_back({key, model[key], value});
            if (done.size() > UndoStack::kMost) done.erase(done.begin());
            undone.clear();
            model[key] = value;
        }
        ASSERT_EQ(RowsPage::values, model) << "after step " << step;
        ASSERT_EQ(shown.back().undo.undo.has_value(), !done.empty());
        ASSERT_EQ(shown.back().undo.redo.has_value(), !undone.empty());
    }
}

} // namespace
