#include "Exchange.h"

#include "Form.h"

#include "platform/foundation/NSKeyedArchiver.h"
#include "tests/foundation/RandomValue.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace tests {

using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Value;
using Effect = Difference::Effect;

namespace {

/// Where two forms part, with what stands before it.
std::string parting(const std::string& expected, const std::string& arrived) {
    std::istringstream expectedTokens(expected);
    std::istringstream arrivedTokens(arrived);
    std::string before;
    std::string one;
    std::string other;
    std::size_t count = 0;
    for (; expectedTokens >> one && arrivedTokens >> other && one == other; ++count)
        before = one;
    return "token " + std::to_string(count) + ", after " + before + ": " + one + " became " + other;
}

} // namespace

std::string formOfArchive(const std::string& answer) {
    const auto archive = bytesOf(answer);
    if (!archive) return answer;
    const auto value = NSKeyedUnarchiver::unarchive(*archive);
    return value ? form(value.value()) : "! " + value.error();
}

Value Exchange::normalised(const Value& value, Effect effect) const {
    if (mode_ != "again") return tests::normalised(value, peerName_, way_, effect);
    // What changes when a peer reads changes more when it writes.
    const Value read = effect == Effect::changes ? value : tests::normalised(value, peerName_, "read", effect);
    return tests::normalised(read, peerName_, "write", effect);
}

void Exchange::send(const Value& value, const std::string& index) {
    const Value sent = normalised(value, Effect::excludes);
    const std::string question =
        mode_ == "write" ? form(sent) : hexOf(NSKeyedArchiver::archivedDataWithRootObject(sent).value());
    const std::string answer = peer_.ask(question);
    const std::string arrived = mode_ == "read" ? answer : formOfArchive(answer);

    const auto ordered = [&](const Value& unordered) { return form(normalised(unordered, Effect::reorders)); };
    const std::string expected = ordered(normalised(sent, Effect::changes));
    const auto arrivedValue = readForm(arrived);
    const std::string seen = arrivedValue ? ordered(*arrivedValue) : arrived;
    if (seen == expected) return;
    ++failures_;
    ADD_FAILURE() << peerName_ << " " << way_ << ", index " << index << ", repeat with --seed " << Run::seed
                  << "\nvalue:    " << form(value) << "\nexpected: " << expected << "\narrived:  " << seen << "\n"
                  << parting(expected, seen) << "\narchive:  " << (mode_ == "read" ? question : answer);
}

void exchangeRandomValues(const std::string& peer, const std::vector<std::string>& arguments, unsigned count) {
    std::cout << "seed " << Run::seed << ", " << count << " values\n";
    RandomValue random(Run::seed);
    Exchange exchange(peer, arguments);
    for (unsigned i = 0; i < count && !exchange.hasFailedOften(); ++i)
        exchange.send(random.next(i % 8 == 0 ? 4 : 2), std::to_string(i));
}

} // namespace tests
