// What differs by the nature of other implementations still does, as docs/interoperability.md has it.

#include "Exchange.h"
#include "Form.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

namespace {

using namespace platform;
using tests::Difference;
using tests::form;
using tests::Peer;

class InteropDifference : public testing::TestWithParam<Difference> {
  protected:
    /// The form in which a value arrives, or "!" and why it does not.
    static std::string arrived(const Value& value) {
        const Difference& difference = GetParam();
        std::istringstream words(difference.way);
        const Peer peer(difference.peer, {std::istream_iterator<std::string>(words), {}});
        if (difference.way == "read")
            return peer.ask(tests::hexOf(NSKeyedArchiver::archivedDataWithRootObject(value).value()));
        return tests::formOfArchive(peer.ask(form(value)));
    }
};

TEST_P(InteropDifference, StillExists) {
    const Difference& difference = GetParam();
    const std::string seen = arrived(difference.witness);
    EXPECT_NE(seen, form(difference.witness)) << "there is no difference any more: remove it, here and from the table";
    const Value normalised = difference.normalised(difference.witness);
    switch (difference.effect) {
    case Difference::Effect::changes:
        EXPECT_EQ(seen, form(normalised));
        break;
    case Difference::Effect::excludes:
        EXPECT_EQ(arrived(normalised), form(normalised));
        break;
    case Difference::Effect::reorders:
        const auto value = tests::readForm(seen);
        ASSERT_TRUE(value) << seen;
        EXPECT_EQ(form(difference.normalised(*value)), form(normalised));
        break;
    }
}

INSTANTIATE_TEST_SUITE_P(Table, InteropDifference, testing::ValuesIn(tests::differences()), [](const auto& instance) {
    std::string name = instance.param.peer + " " + instance.param.way + " " + instance.param.name;
    std::ranges::replace(name, ' ', '_');
    return name;
});

TEST(InteropDifferences, AreTheRowsOfTheTable) {
    std::ifstream file(LUMORA_SOURCE "/docs/interoperability.md");
    const std::string page(std::istreambuf_iterator<char>(file), {});
    for (const Difference& difference : tests::differences()) {
        const std::string row = "| " + difference.peer + " " + difference.way + " | `" + difference.name + "` |";
        EXPECT_NE(page.find(row), std::string::npos) << row;
    }
    // A row of this table, and of no other, has a name of this kind in its second column.
    const std::regex anyRow(R"(\n\| [a-z ]+ \| `[A-Z][A-Za-z]+` \|)");
    EXPECT_EQ(std::distance(std::sregex_iterator(page.begin(), page.end(), anyRow), {}),
              std::ssize(tests::differences()));
}

} // namespace
