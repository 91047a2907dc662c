#include "appview/ViewHost.h"

#include "lists/PluginDiscovery.h"
#include "platform/foundation/DeviceRoot.h"
#include "tests/lists/PluginFolder.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <fstream>
#include <future>
#include <memory>
#include <mutex>
#include <vector>

namespace {

using namespace lumora;
using namespace std::chrono_literals;
using testing::_;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Eq;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;
using Kind = DrawingStep::Kind;
using Outcome = ViewAnswer::Outcome;

/// Short for what hangs, and long enough for what is only late on a busy machine.
constexpr ViewHost::Limits kShort{.processor = 1s, .clock = 4s, .starting = 20s, .startingProcessor = 5s};

/// A host, with its answers in their order.
class Asked {
  public:
    explicit Asked(const std::filesystem::path& bundle)
        : host_(
              bundle,
              [this](const ViewAnswer& answer) {
                  return [this, answer] {
                      const std::lock_guard lock(mutex_);
                      answers_.push_back(answer);
                      come_.notify_all();
                  };
              },
              kShort) {}

    ViewAnswer draw(DrawingQuestion question = {322, 257, 1, true, {}, {}}) {
        return answer(host_.draw(std::move(question)));
    }
    ViewAnswer answer(std::uint64_t question) {
        std::unique_lock lock(mutex_);
        const bool came = come_.wait_for(lock, tests::kLongEnough,
                                         [&] { return !answers_.empty() && answers_.back().question == question; });
        return came ? answers_.back() : ViewAnswer{Outcome::stopped, 0, {}, "no answer at all"};
    }
    ViewHost& host() { return host_; }
    std::size_t count() {
        const std::lock_guard lock(mutex_);
        return answers_.size();
    }

  private:
    std::mutex mutex_;
    std::condition_variable come_;
    std::vector<ViewAnswer> answers_;
    ViewHost host_; ///< ends before the rest
};

struct ViewHosts : testing::Test {
    std::filesystem::path bundle(const std::string& kind) { return plugins.add(kind + "-1.bundle", "DrawingPlugin"); }
    ViewAnswer drawn(const std::string& kind) { return Asked(bundle(kind)).draw(); }
    /// Why the plug-in has stopped.
    std::string fault(const std::string& kind) {
        const ViewAnswer answer = drawn(kind);
        EXPECT_EQ(answer.outcome, Outcome::stopped) << kind;
        return answer.why;
    }

    tests::PluginFolder plugins;
};

TEST_F(ViewHosts, HavePlugInsDraw) {
    DrawingQuestion question{322, 257, 1, true, {}, {{"test.each-1.word", "Lakeside"}}};
    const ViewAnswer answer = Asked(bundle("each")).draw(question);
    ASSERT_EQ(answer.outcome, Outcome::drawn) << answer.why;
    std::vector<Kind> kinds;
    for (const DrawingStep& step : answer.drawing.steps)
        kinds.push_back(step.kind);
    EXPECT_THAT(kinds, ElementsAre(Kind::color, Kind::rectangle, Kind::gradient, Kind::line, Kind::arc, Kind::path,
                                   Kind::picture, Kind::clip, Kind::caption, Kind::text));
    EXPECT_THAT(answer.drawing.steps[1].numbers, ElementsAre(0, 0, 322, 257, 0));
    EXPECT_EQ(answer.drawing.steps[8].text, "Lakeside");
    EXPECT_EQ(answer.drawing.again, 0);
}

/// What a sample writes with some settings, each text with its size.
std::vector<std::pair<std::string, double>> writtenBy(const std::string& sample, const platform::Dictionary& settings) {
    platform::setDeviceRoot(LUMORA_TEST_ROOT);
    DrawingQuestion question{322, 257, 1, true, {}, settings};
    question.time.tm_hour = 18;
    question.time.tm_sec = 20;
    const ViewAnswer answer = Asked(pluginFolder() / (sample + "View.bundle")).draw(question);
    EXPECT_EQ(answer.outcome, Outcome::drawn) << sample << ": " << answer.why;
    EXPECT_EQ(answer.drawing.again, sample == "Clock" ? 40 : 0);
    std::vector<std::pair<std::string, double>> texts;
    for (const DrawingStep& step : answer.drawing.steps)
        if (step.kind == Kind::text) texts.emplace_back(step.text, step.numbers[3]);
    platform::setDeviceRoot({});
    return texts;
}

TEST(SampleViews, FollowTheirSettings) {
    EXPECT_THAT(writtenBy("Weather", {}), Contains(Pair("14°", _)));
    EXPECT_THAT(writtenBy("Weather", {{"org.lumora.plugins.weather.units", "kelvin"}}), Contains(Pair("287 K", _)));
    EXPECT_THAT(writtenBy("Weather", {{"org.lumora.plugins.weather.units", "fahrenheit"}}), Contains(Pair("57°", _)));
    EXPECT_THAT(writtenBy("Weather", {{"org.lumora.plugins.weather.hours", 2.0}}), Not(Contains(Pair("20", _))));
    EXPECT_THAT(writtenBy("Weather", {{"org.lumora.plugins.weather.tomorrow", false}}),
                Contains(Pair("Feels like 12° · wind 9 km/h", _)));
    EXPECT_EQ(writtenBy("Notes", {}).front(), std::pair(std::string("Packing list"), 16.0));
    EXPECT_EQ(writtenBy("Notes", {{"org.lumora.plugins.notes.order", "title"}}).front().first, "Boathouse");
    EXPECT_EQ(writtenBy("Notes", {{"org.lumora.plugins.notes.textSize", 20.0}}).front().second, 21);
    EXPECT_THAT(writtenBy("Notes", {}), Contains(Pair("Locked", _)));
    EXPECT_THAT(writtenBy("Notes", {{"org.lumora.plugins.notes.hideLocked", false}}), Not(Contains(Pair("Locked", _))));
    EXPECT_EQ(writtenBy("Notes", {{"org.lumora.plugins.notes.title", "Ridge"}}).back().first, "New note: Ridge");
    EXPECT_THAT(writtenBy("Music", {}), Contains(Pair("1:32", _)));
    EXPECT_THAT(writtenBy("Clock", {}), Contains(Pair("18:00", _)));
}

TEST_F(ViewHosts, DrawOnceMoreForEachQuestion) {
    Asked asked(bundle("each"));
    for (const char* word : {"one", "two", "three"}) {
        const ViewAnswer answer = asked.draw({100, 100, 2, false, {}, {{"test.each-1.word", word}}});
        ASSERT_EQ(answer.outcome, Outcome::drawn) << answer.why;
        EXPECT_EQ(answer.drawing.steps[8].text, word);
    }
}

/// Of the processes that this one has started; "T" for one that stands still.
std::string statesOfChildren() {
    std::string states;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream list(thread.path() / "children");
        for (std::string id; list >> id;) {
            std::ifstream about("/proc/" + id + "/stat");
            std::string number;
            std::string name;
            std::string state;
            about >> number >> name >> state;
            states += state;
        }
    }
    return states;
}

TEST_F(ViewHosts, HaveNothingRunBetweenQuestions) {
    Asked asked(bundle("good"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(asked.draw().outcome, Outcome::drawn);
        EXPECT_TRUE(tests::eventually([] { return statesOfChildren() == "T"; }));
    }
}

TEST_F(ViewHosts, AnswerOnlyTheLastOfManyQuestions) {
    Asked asked(bundle("good"));
    std::uint64_t last = 0;
    for (int i = 0; i < 1000; ++i)
        last = asked.host().draw({100, double(i), 1, true, {}, {}});
    EXPECT_EQ(asked.answer(last).outcome, Outcome::drawn);
    EXPECT_LT(asked.count(), 1000U);
}

TEST_F(ViewHosts, WaitASecondAtTheLeast) {
    EXPECT_EQ(drawn("ticking").drawing.again, 1);
    const ViewAnswer odd = drawn("odd");
    EXPECT_EQ(odd.outcome, Outcome::drawn) << odd.why;
    EXPECT_EQ(odd.drawing.again, 0);
}

TEST_F(ViewHosts, SurvivePlugInsThatEndTheirProcess) {
    for (const char* kind : {"crashing", "exiting"})
        EXPECT_EQ(fault(kind), "its process has ended") << kind;
}

TEST_F(ViewHosts, EndPlugInsThatAreLate) {
    for (const char* kind : {"looping", "sleeping"})
        EXPECT_EQ(fault(kind), "it takes too long") << kind;
}

TEST_F(ViewHosts, StopPlugInsThatThrowOrScribble) {
    EXPECT_EQ(fault("throwing"), "it throws");
    EXPECT_THAT(fault("scribbling"), HasSubstr("not its own"));
    EXPECT_THAT(fault("garbling"), HasSubstr("not its own"));
}

TEST_F(ViewHosts, HaveAnotherProcessDrawWhereOneFailedThatDrewBefore) {
    for (const char* kind : {"crashing-later", "turning"}) {
        Asked asked(bundle(kind));
        EXPECT_EQ(asked.draw().outcome, Outcome::drawn) << kind;
        EXPECT_EQ(asked.draw().outcome, Outcome::drawn) << kind;
    }
}

TEST_F(ViewHosts, TellOfDrawingsBeyondTheLimits) {
    for (const auto& [kind, why] :
         {std::pair("many", "it draws too many steps"), std::pair("large", "its drawing is too large")}) {
        const ViewAnswer answer = drawn(kind);
        EXPECT_EQ(answer.outcome, Outcome::tooMuch);
        EXPECT_EQ(answer.why, why);
    }
}

TEST_F(ViewHosts, HearNothingOfWhatPlugInsPrint) {
    const ViewAnswer answer = drawn("flooding");
    EXPECT_EQ(answer.outcome, Outcome::drawn) << answer.why;
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(ViewHosts, GivePlugInsLittleMemory) {
    EXPECT_THAT(fault("hungry"), AnyOf(Eq("it throws"), Eq("its process has ended")));
    Asked leaking(bundle("leaking"));
    for (int i = 0; i < 20; ++i) {
        const ViewAnswer answer = leaking.draw();
        ASSERT_EQ(answer.outcome, Outcome::drawn) << answer.why;
        EXPECT_LT(std::stoi(answer.drawing.steps[0].text), 8) << "drawings of one process";
    }
}

TEST_F(ViewHosts, GivePlugInsMemoryForTheLargestDrawingEachTime) {
    Asked large(bundle("large-enough"));
    for (int i = 0; i < 10; ++i)
        ASSERT_EQ(large.draw().outcome, Outcome::drawn);
}
#endif

TEST_F(ViewHosts, StopWithoutAPlugInThatDraws) {
    EXPECT_EQ(fault("older"), "it does not draw");
    EXPECT_EQ(fault("idle"), "it does not draw");
    EXPECT_EQ(Asked(plugins.path() / "missing.bundle").draw().why, "it is no folder");
}

TEST_F(ViewHosts, SayNothingMoreOnceTheyAreGone) {
    std::atomic<int> told = 0;
    {
        ViewHost host(
            bundle("sleeping"), [&](const ViewAnswer&) { return [&] { ++told; }; }, kShort);
        host.draw({});
    }
    EXPECT_EQ(drawn("good").outcome, Outcome::drawn);
    EXPECT_EQ(told, 0);
}

TEST_F(ViewHosts, EndWithoutWaitingForWhatIsMadeOfTheirAnswers) {
    std::promise<void> begun;
    std::promise<void> goOn;
    std::atomic<bool> over = false;
    std::atomic<int> told = 0;
    {
        ViewHost host(
            bundle("good"),
            [&](const ViewAnswer&) {
                begun.set_value();
                goOn.get_future().wait();
                return [&told, gone = std::shared_ptr<void>(nullptr, [&](void*) { over = true; })] { ++told; };
            },
            kShort);
        host.draw({322, 257, 1, true, {}, {}});
        tests::awaited(begun.get_future(), "the answer");
    }
    goOn.set_value();
    EXPECT_TRUE(tests::eventually([&] { return over.load(); }));
    EXPECT_EQ(told, 0);
}

TEST_F(ViewHosts, FindOutWhoDrawsAndIsSecureWithoutLoadingThem) {
    for (const char* kind : {"good", "idle", "older"})
        bundle(kind);
    const auto answers = askPlugins({20s, 5s});
    ASSERT_EQ(answers.size(), 3U);
    EXPECT_TRUE(answers[0].draws && answers[0].secure);
    EXPECT_TRUE(!answers[1].draws && answers[1].secure);
    EXPECT_TRUE(!answers[2].draws && !answers[2].secure) << "version 1";
    EXPECT_EQ(answers[2].bundle, plugins.path() / "older-1.bundle");
}

} // namespace
