#include "tests/soak/Ledger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::Census;
using tests::Ledger;

constexpr Ledger::Tolerance kTolerance{.grownKb = 1000, .grownHeapKb = 100, .busy = 10};

Census census(long descriptors, long threads, long residentKb, long heapKb) {
    return {{descriptors, threads, residentKb, heapKb}};
}

Ledger ledgerOf(const Census& first, const Census& between, const Census& last) {
    Ledger ledger("program", kTolerance);
    ledger.begin(first);
    ledger.note(between);
    ledger.end(last);
    return ledger;
}

TEST(Ledger, TakesForFlatWhatComesBackToWhereItWas) {
    EXPECT_THAT(ledgerOf(census(5, 3, 9000, 700), census(15, 13, 90000, 7000), census(5, 3, 10000, 800)).complaints(),
                IsEmpty());
}

TEST(Ledger, ComplainsOfOneDescriptorOrThreadThatStays) {
    const Census first = census(5, 3, 9000, 700);
    EXPECT_THAT(ledgerOf(first, first, census(6, 3, 9000, 700)).complaints(),
                ElementsAre("program: descriptors at last: 6, and at first 5"));
    EXPECT_THAT(ledgerOf(first, first, census(5, 4, 9000, 700)).complaints(),
                ElementsAre("program: threads at last: 4, and at first 3"));
}

TEST(Ledger, ComplainsOfMoreAtATimeThanTheWorkMayTake) {
    const Census first = census(5, 3, 9000, 700);
    EXPECT_THAT(ledgerOf(first, census(16, 14, 9000, 700), first).complaints(),
                ElementsAre(HasSubstr("descriptors at most: 16"), HasSubstr("threads at most: 14")));
}

TEST(Ledger, ComplainsOfMemoryBeyondWhatIsTolerated) {
    const Census first = census(5, 3, 9000, 700);
    EXPECT_THAT(ledgerOf(first, first, census(5, 3, 10001, 801)).complaints(),
                ElementsAre(HasSubstr("resident kB at last: 10001"), HasSubstr("heap in use kB at last: 801")));
}

TEST(Ledger, ComplainsWhenNothingWasCounted) {
    EXPECT_THAT(Ledger("program", kTolerance).complaints(), ElementsAre("program: was not there to be counted"));
    EXPECT_THAT(ledgerOf(census(5, 3, 9000, 700), Census{}, Census{}).complaints(),
                ElementsAre("program: was not there to be counted"));
}

TEST(Ledger, ShowsFirstLastAndLargest) {
    const std::string table = ledgerOf(census(5, 3, 9000, 0), census(15, 4, 9001, 0), census(6, 3, 9000, 0)).table();
    EXPECT_THAT(table, testing::ContainsRegex("descriptors +5 +6 +15\n"));
    EXPECT_THAT(table, testing::Not(HasSubstr("heap"))) << "it is unknown";
}

} // namespace
