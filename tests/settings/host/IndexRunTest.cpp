#include "settings/host/IndexRun.h"

#include "tests/settings/host/NavigationTest.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using namespace tests;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// A page that gives the links a test wants it to have.
class IndexedPage : public PSListController {
  public:
    static inline std::map<std::string, std::vector<PSDetail>> links;

    explicit IndexedPage(std::string name) : name_(std::move(name)) {}
    PSSpecifierList specifiers() override {
        if (name_ == "Faulty") throw std::runtime_error("no rows today");
        std::vector<PSSpecifierRef> rows;
        for (const PSDetail& link : links[name_])
            rows.push_back(PSSpecifier::preferenceSpecifierNamed("To " + link.name(), this, nullptr, nullptr, link,
                                                                 PSLinkCell, false));
        return std::make_shared<const std::vector<PSSpecifierRef>>(std::move(rows));
    }

  private:
    std::string name_;
};

ClassRecord recordOf(const std::string& name) {
    return {name, [name]() -> std::shared_ptr<NSObject> {
                auto page = std::make_shared<IndexedPage>(name);
                return page->init() ? page : nullptr;
            }};
}

/// A page of the bundle: its name leads to it.
Class ownPage(const std::string& name) {
    return registerClass(recordOf(name));
}

/// A page of a plug-in: rows alone know it.
Class pluginPage(const std::string& name) {
    static std::map<std::string, ClassRecord> records;
    return &records.try_emplace(name, recordOf(name)).first->second;
}

struct IndexRunTest : testing::Test {
    IndexRunTest() { IndexedPage::links.clear(); }

    /// What is told, pages cut off behind their ways.
    static std::vector<std::string> told(const std::string& behind = "") {
        std::vector<std::string> lines;
        settings::walkForIndex({ownPage("IndexFirst"), "First", {390, 792}, behind}, [&](std::string_view line) {
            const std::string_view upToWay = line.substr(0, line.find("\",\"page"));
            lines.emplace_back(line.starts_with("page ") ? "page " + std::string(upToWay.substr(upToWay.rfind('"') + 1))
                                                         : std::string(line));
        });
        return lines;
    }
};

TEST_F(IndexRunTest, GoesIntoEachPageBeforeItGoesOnBehindIt) {
    IndexedPage::links = {{"IndexFirst", {ownPage("Left"), "NoSuchPage", ownPage("Right")}},
                          {"Left", {ownPage("Deep")}}};
    EXPECT_THAT(told(), ElementsAre("begin  First", "page ", "begin 0 To Left", "page 0", "begin 0.0 To Deep",
                                    "page 0.0", "begin 2 To Right", "page 2", "end"));
}

TEST_F(IndexRunTest, EndsWhereLinksLeadInCircles) {
    IndexedPage::links = {{"IndexFirst", {ownPage("Left"), ownPage("Right")}},
                          {"Left", {ownPage("IndexFirst"), ownPage("Left"), ownPage("Right")}}};
    const auto lines = told();
    EXPECT_EQ(std::ranges::count(lines, "begin 1 To Right"), 0) << "which Left has led to";
    EXPECT_EQ(std::ranges::count_if(lines, [](const auto& line) { return line.starts_with("page"); }), 3);
}

TEST_F(IndexRunTest, SaysWhichPageFailsAndGoesOn) {
    IndexedPage::links = {{"IndexFirst", {ownPage("Faulty"), ownPage("Right")}}};
    EXPECT_THAT(told(), ElementsAre("begin  First", "page ", "begin 0 To Faulty", "missing To Faulty: no rows today",
                                    "begin 1 To Right", "page 1", "end"));
}

TEST_F(IndexRunTest, TellsOfPagesOfPlugInsLast) {
    const Class plugin = pluginPage("Plugin");
    IndexedPage::links = {{"IndexFirst", {plugin, ownPage("Right")}}, {"Plugin", {pluginPage("Below")}}};
    EXPECT_THAT(told(), ElementsAre("begin  First", "page ", "begin 1 To Right", "page 1", "begin s0 To Plugin",
                                    "page 0", "page 0.0", "end"))
        << "and what is behind them belongs to them";
}

TEST_F(IndexRunTest, GoesOnBehindAPage) {
    IndexedPage::links = {{"IndexFirst", {ownPage("Left"), pluginPage("Plugin"), ownPage("Right"), pluginPage("Next")}},
                          {"Left", {ownPage("Deep"), ownPage("Deeper")}},
                          {"Deep", {ownPage("Deepest")}}};
    EXPECT_THAT(told("0.0"),
                ElementsAre("begin  First", "begin 0 To Left", "begin 0.1 To Deeper", "page 0.1", "begin 2 To Right",
                            "page 2", "begin s1 To Plugin", "page 1", "begin s3 To Next", "page 3", "end"))
        << "the pages on the way are made, and not told of again";
    EXPECT_THAT(told("s1"), ElementsAre("begin  First", "begin s3 To Next", "page 3", "end"));
    EXPECT_THAT(told("s3"), ElementsAre("begin  First", "end"));
    EXPECT_THAT(told("2"),
                ElementsAre("begin  First", "begin s1 To Plugin", "page 1", "begin s3 To Next", "page 3", "end"));
}

TEST_F(IndexRunTest, BeginsAnewBehindWhatIsNoPage) {
    IndexedPage::links = {{"IndexFirst", {ownPage("Left")}}};
    EXPECT_EQ(told("nonsense"), told());
}

} // namespace
