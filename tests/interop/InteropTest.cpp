// Archives exchanged both ways with other implementations.

#include "Exchange.h"

#include <gtest/gtest.h>

#include <charconv>
#include <csignal>
#include <cstring>
#include <iostream>
#include <random>

namespace {

using tests::Run;

class Interop : public testing::TestWithParam<std::string> {};

TEST_P(Interop, PeerReadsWhatWeWrite) {
    tests::exchangeRandomValues(GetParam(), {"read"}, Run::values);
}

TEST_P(Interop, WeReadWhatPeerWrites) {
    tests::exchangeRandomValues(GetParam(), {"write"}, Run::values);
}

TEST_P(Interop, ValuesComeFullCircle) {
    tests::exchangeRandomValues(GetParam(), {"again"}, Run::values);
}

INSTANTIATE_TEST_SUITE_P(Peers, Interop, testing::Values("gnustep", "libplist", "plistlib"),
                         [](const auto& instance) { return instance.param; });

bool readOption(const char* name, int argc, char** argv, unsigned& number) {
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], name) == 0)
            return std::from_chars(argv[i + 1], argv[i + 1] + std::strlen(argv[i + 1]), number).ec == std::errc();
    return true;
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    Run::seed = std::random_device{}();
    if (!readOption("--seed", argc, argv, Run::seed) || !readOption("--values", argc, argv, Run::values)) {
        std::cerr << "usage: interop_test [--seed N] [--values N] [--gtest_filter=…]\n";
        return 2;
    }
    // A peer that ends early is for the tests to tell.
    std::signal(SIGPIPE, SIG_IGN);
    return RUN_ALL_TESTS();
}
