// Values at the edges of what the format and its readers do, exchanged in every way.

#include "Exchange.h"

#include "platform/foundation/PropertyList.h"
#include "tests/foundation/EdgeValues.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::string_literals;
using tests::Exchange;

struct Shape {
    std::string name;
    Value value;
};

/// Counts around those that need one byte more than those below them.
std::vector<Shape> countedShapes() {
    std::vector<Shape> shapes;
    for (const int count : {14, 15, 16, 255, 256, 257, 65535, 65536}) {
        const auto add = [&](const std::string& what, Value value) {
            shapes.push_back({std::to_string(count) + what, std::move(value)});
        };
        const auto size = static_cast<std::size_t>(count);
        add("Characters", std::string(size, 'x'));
        std::string wide;
        for (int i = 0; i < count; ++i)
            wide += "ü";
        add("WideCharacters", wide);
        add("Bytes", Data(size, 7));
        add("EqualEntries", List(size, Value("same")));
        if (count > 300) continue;
        List list;
        Dictionary dictionary;
        for (int i = 0; i < count; ++i) {
            list.emplace_back(i);
            dictionary.set("key " + std::to_string(i), i);
        }
        add("Entries", std::move(list));
        add("Keys", std::move(dictionary));
    }
    return shapes;
}

std::vector<Shape> shapes() {
    const Value shared = List{1, "one", Dictionary{{"k", 1.5}}};
    std::vector<Shape> shapes = countedShapes();
    for (Shape& shape :
         std::vector<Shape>{{"Nil", Value()},
                            {"Integers", edgeIntegers()},
                            {"Reals", edgeReals()},
                            {"MinusZero", List{-0.0, Date{-0.0}}},
                            {"NotANumber", std::nan("")},
                            {"Dates", List{Date{0}, Date{-1e9}, Date{0.1}, Date{1e300},
                                           Date{-std::numeric_limits<double>::infinity()}}},
                            {"OnesOfEveryKind", List{1, 1.0, true, "1", Data{1}, Date{1}, "true", List{1}}},
                            {"NothingsOfEveryKind",
                             List{0, 0.0, false, "", Data{}, Date{0}, List{}, Dictionary{}, Value(), List{Value()}}},
                            {"Texts", List{"\0"s, "a\0b"s, "\0ü"s, "\uFEFF", "\uFFFE", "\uFFFF", "\U00010000",
                                           "\U0010FFFF", "😀", "\uD7FF\uE000", "\x7F", "\x01\r\n\t", "u\u0308", "ü"}},
                            {"NamesOfTheFormat", Dictionary{{"$class", "$null"},
                                                            {"NS.objects", List{"$objects", "NS.keys"}},
                                                            {"CF$UID", 1},
                                                            {"$classname", "NSArray"}}},
                            {"ShapeOfAReference", Dictionary{{"CF$UID", 1}}},
                            {"SharedLists", List{shared, shared, List{shared}, Dictionary{{"k", shared}}}},
                            {"EqualLists", List{List{1, "one"}, List{1, "one"}}},
                            {"DeepestNesting", nested(PropertyListLimits::depth)}})
        shapes.push_back(std::move(shape));
    return shapes;
}

using PeerAndMode = std::tuple<std::string, std::string>;
class InteropShape : public testing::TestWithParam<PeerAndMode> {};

std::string nameOf(const testing::TestParamInfo<PeerAndMode>& instance) {
    return std::get<0>(instance.param) + "_" + std::get<1>(instance.param);
}

TEST_P(InteropShape, Arrives) {
    const auto& [peer, mode] = GetParam();
    Exchange exchange(peer, {mode});
    for (const Shape& shape : shapes())
        exchange.send(shape.value, shape.name);
}

INSTANTIATE_TEST_SUITE_P(Peers, InteropShape,
                         testing::Combine(testing::Values("gnustep", "libplist", "plistlib"),
                                          testing::Values("read", "again", "write")),
                         nameOf);

// Not with GNUstep: its times grow with the square of the number of different objects, to minutes for so many.
class InteropLargeShape : public testing::TestWithParam<PeerAndMode> {};

TEST_P(InteropLargeShape, SeventyThousandObjectsArrive) {
    const auto& [peer, mode] = GetParam();
    List list;
    Dictionary dictionary;
    for (int i = 0; i < 70'000; ++i) {
        list.emplace_back(i);
        if (i % 2 == 0) dictionary.set("key " + std::to_string(i), i);
    }
    Exchange(peer, {mode}).send(List{std::move(list), std::move(dictionary)}, "70000 objects");
}

INSTANTIATE_TEST_SUITE_P(Peers, InteropLargeShape,
                         testing::Combine(testing::Values("libplist", "plistlib"),
                                          testing::Values("read", "again", "write")),
                         nameOf);

} // namespace
