// What is read at the very edge of what is allowed, and refused one step beyond.

#include "Codec.h"
#include "RawArchive.h"

#include <random>

namespace {

using namespace platform;

constexpr const char* overBudget = "shared objects stand for too large a value";

/// Expects a value to be read if it needs no more than is allowed. True for one that needs just that.
bool needsAll(const Result<Value>& read, std::size_t needed, std::size_t allowed, const char* why = overBudget) {
    EXPECT_EQ(refusal(read), needed <= allowed ? "" : why) << needed << " of " << allowed;
    return needed == allowed;
}

std::size_t valuesAllowed(const Data& bytes) {
    return bytes.size() * PropertyListLimits::valuesPerByte + PropertyListLimits::spareValues;
}
std::size_t bytesAllowed(const Data& bytes) {
    return bytes.size() * PropertyListLimits::expandedBytesPerByte + PropertyListLimits::spareBytes;
}

/// References to one object and then to another, so many times each.
std::vector<std::size_t> repeated(std::size_t first, std::size_t times, std::size_t second, std::size_t timesSecond) {
    std::vector<std::size_t> references(times, first);
    references.insert(references.end(), timesSecond, second);
    return references;
}

/// Lists that hold lists further on: entry i are the lists that list i refers to. The last ones hold nothing.
using Graph = std::vector<std::vector<std::size_t>>;

/// One long chain with a few references across it.
Graph randomGraph(std::mt19937& random) {
    const auto below = [&random](std::size_t bound) { return std::size_t{random()} % bound; };
    Graph graph(PropertyListLimits::depth + below(16));
    for (std::size_t i = 0; i + 1 < graph.size(); ++i)
        graph[i].push_back(i + 1 + (below(30) == 0 ? below(std::min<std::size_t>(4, graph.size() - i - 1)) : 0));
    for (std::size_t i = 0; i < 5; ++i) {
        const std::size_t from = below(graph.size() - 1);
        const std::size_t place = below(graph[from].size() + 1);
        graph[from].insert(graph[from].begin() + std::ptrdiff_t(place), from + 1 + below(graph.size() - from - 1));
    }
    return graph;
}

/// How many levels of lists each list has, and how many values it stands for.
struct Extent {
    std::vector<std::size_t> levels, values;

    explicit Extent(const Graph& graph) : levels(graph.size(), 1), values(graph.size(), 1) {
        for (std::size_t i = graph.size(); i-- > 0;) {
            for (const std::size_t entry : graph[i]) {
                levels[i] = std::max(levels[i], levels[entry] + 1);
                values[i] += values[entry];
            }
        }
    }
};

TEST(ArchiveBudget, OfDepthCountsTheLevelsOfListsThatAreShared) {
    std::mt19937 random(1); // always the same: there are enough of them, on both sides
    std::size_t readable = 0;
    constexpr std::size_t graphs = 400;
    for (std::size_t i = 0; i < graphs; ++i) {
        const Graph graph = randomGraph(random);
        const Extent extent(graph);
        RawList list(1);
        RawArchive archive;
        for (const std::vector<std::size_t>& entries : graph) {
            list.addList(entries);
            std::vector<std::size_t> uids;
            std::ranges::transform(entries, std::back_inserter(uids), [](std::size_t entry) { return entry + 1; });
            archive.addList(uids);
        }
        const bool shallow = extent.levels[0] <= PropertyListLimits::depth;
        readable += shallow ? 1U : 0U;
        for (const auto& [bytes, value] : {std::pair(list.bytes(), readPropertyList(list.bytes())),
                                           std::pair(archive.bytes(), NSKeyedUnarchiver::unarchive(archive.bytes()))}) {
            const bool small = extent.values[0] <= valuesAllowed(bytes);
            ASSERT_EQ(bool(value), shallow && small) << "graph " << i << " of " << extent.levels[0] << " levels";
            if (small != shallow) {
                ASSERT_EQ(value.error(), small ? "nested too deeply" : overBudget);
            }
        }
    }
    EXPECT_GT(readable, graphs / 10);
    EXPECT_LT(readable, graphs - graphs / 10);
}

TEST(ArchiveBudget, OfDepthCountsAListThatHoldsNothingButOneMetBefore) {
    for (const std::size_t chain : {PropertyListLimits::depth - 3, PropertyListLimits::depth - 2}) {
        RawList list(1);
        list.addList({1, 2, 3}).addList({}).addList({1});
        for (std::size_t i = 1; i < chain; ++i)
            list.addList({i + 3});
        list.addList({2});
        EXPECT_EQ(refusal(readPropertyList(list.bytes())),
                  chain + 3 <= PropertyListLimits::depth ? "" : "nested too deeply");
    }
}

TEST(ArchiveBudget, OfDepthCountsNoLevelForATextThatIsShared) {
    RawList list(1);
    list.addList({1, 1, 2}).add("text");
    for (std::size_t i = 2; i < PropertyListLimits::depth; ++i)
        list.addList({i + 1});
    list.addList({1});
    EXPECT_EQ(refusal(readPropertyList(list.bytes())), "");
}

TEST(ArchiveBudget, OfValuesIsUsedUpToTheLast) {
    // Sixty lists of a hundred values, and some single ones. An unused text adds 4 a byte to the budget.
    int exact = 0;
    for (const auto& [listsLast, isText] : {std::pair(false, false), {false, true}, {true, false}, {true, true}}) {
        for (std::size_t single = 0; single < 4; ++single) {
            for (std::size_t unused = 15; unused < 300; ++unused) {
                RawList list(1);
                list.addList(listsLast ? repeated(2, single, 1, 60) : repeated(1, 60, 2, single));
                list.addList(std::vector<std::size_t>(99, 2));
                // A number is read anew each time, a text is remembered.
                (isText ? list.add("t") : list.add({0x09})).add(std::string(unused, 'u'));
                const Data bytes = list.bytes();
                exact += needsAll(readPropertyList(bytes), 1 + 60 * 100 + single, valuesAllowed(bytes)) ? 1 : 0;
            }
        }
    }
    EXPECT_EQ(exact, 4);
}

TEST(ArchiveBudget, OfTextIsUsedUpToTheLastByte) {
    constexpr std::size_t length = 100 * PropertyListLimits::expandedBytesPerByte;
    int exact = 0;
    for (const std::size_t own : {std::size_t{0}, length}) { // a text of its own comes last, or one that is shared
        for (std::size_t unused = 15; unused < 1'500; ++unused) {
            const std::size_t uses = own == 0 ? 240 : 303;
            RawList list(2);
            list.addList(repeated(1, uses, 2, own == 0 ? 0 : 1)).add(std::string(length, 't'));
            list.add(std::string(own, 'o')).add(std::string(unused, 'u'));
            const Data bytes = list.bytes();
            exact += needsAll(readPropertyList(bytes), uses * length + own, bytesAllowed(bytes)) ? 1 : 0;
        }
    }
    EXPECT_EQ(exact, 2);
}

TEST(ArchiveBudget, OfTextIsNotUsedByANilThatIsShared) {
    constexpr std::size_t length = 100 * PropertyListLimits::expandedBytesPerByte;
    int exact = 0;
    for (std::size_t unused = 15; unused < 3'000; ++unused) {
        RawArchive archive;
        archive.addList(repeated(2, 300, 3, 1'000)).addText(std::string(length, 't')).addNull();
        archive.addText(std::string(unused, 'u'));
        const Data bytes = archive.bytes();
        exact += needsAll(NSKeyedUnarchiver::unarchive(bytes), 300 * length, bytesAllowed(bytes)) ? 1 : 0;
    }
    EXPECT_EQ(exact, 1);
}

TEST(ArchiveBudget, OfObjectsThatOverlapIsTwiceTheFile) {
    int exact = 0;
    for (std::size_t length = 400; length < 700; ++length) {
        RawList list(1);
        std::vector<std::size_t> references = repeated(1, 400, 2, 1);
        references.insert(references.end(), {3, 4});
        list.addList(references).add({0x09}).add(std::string(length, 't')).addAlias(2, 0).addAlias(2, 0);
        const Data bytes = list.bytes();
        const std::size_t read = references.size() + 3 * length;
        exact += needsAll(readPropertyList(bytes), read, 2 * bytes.size(), "objects overlap") ? 1 : 0;
    }
    EXPECT_EQ(exact, 1);
}

} // namespace
