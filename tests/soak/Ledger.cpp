#include "tests/soak/Ledger.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tests {

namespace {

constexpr std::array<const char*, Census::kQuantities> kNames{"descriptors", "threads", "resident kB",
                                                              "heap in use kB"};

} // namespace

void Ledger::begin(const Census& atRest) {
    first_ = atRest;
    note(atRest);
}

void Ledger::note(const Census& census) {
    for (std::size_t quantity = 0; quantity < Census::kQuantities; ++quantity)
        largest_.held.at(quantity) = std::max(largest_[quantity], census[quantity]);
}

void Ledger::end(const Census& atRest) {
    last_ = atRest;
    note(atRest);
}

std::string Ledger::table() const {
    std::string lines;
    for (std::size_t quantity = 0; quantity < Census::kQuantities; ++quantity) {
        if (largest_[quantity] == 0) continue; // the heap of another process is unknown
        std::array<char, 120> line{};
        std::snprintf(line.data(), line.size(), "  %-12s %-16s %10ld %10ld %10ld\n", process_.c_str(),
                      kNames.at(quantity), first_.value_or(Census{})[quantity], last_.value_or(Census{})[quantity],
                      largest_[quantity]);
        lines += line.data();
    }
    return lines;
}

std::vector<std::string> Ledger::complaints() const {
    if (!first_ || !last_ || (*first_)[Census::descriptors] == 0 || (*last_)[Census::descriptors] == 0)
        return {process_ + ": was not there to be counted"};
    std::vector<std::string> found;
    const auto expectAtMost = [&](std::size_t quantity, long count, long most, const char* when) {
        if (count > most)
            found.push_back(process_ + ": " + kNames.at(quantity) + " " + when + ": " + std::to_string(count) +
                            ", and at first " + std::to_string((*first_)[quantity]));
    };
    for (const auto quantity : {Census::descriptors, Census::threads}) {
        expectAtMost(quantity, (*last_)[quantity], (*first_)[quantity], "at last");
        expectAtMost(quantity, largest_[quantity], (*first_)[quantity] + tolerance_.busy, "at most");
    }
    const auto resident = Census::residentKb;
    expectAtMost(resident, (*last_)[resident], (*first_)[resident] + tolerance_.grownKb, "at last");
    const auto heap = Census::heapKb;
    expectAtMost(heap, (*last_)[heap], (*first_)[heap] + tolerance_.grownHeapKb, "at last");
    return found;
}

} // namespace tests
