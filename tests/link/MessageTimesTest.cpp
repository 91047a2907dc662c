#include "link/Notify.h"

#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/Dispatch.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

// This program sends nothing: it has a CFMessagePortSendRequest() of its own, which sees what each message is given.

namespace {

double sendTimeout = 0;
double receiveTimeout = 0;

} // namespace

platform::CFMessagePortResult platform::CFMessagePortSendRequest(const CFMessagePort& /*remote*/,
                                                                 std::int32_t /*messageId*/,
                                                                 const std::optional<Data>& /*body*/, double toSend,
                                                                 double toReceive, std::optional<Data>* /*reply*/) {
    sendTimeout = toSend;
    receiveTimeout = toReceive;
    return kCFMessagePortSendTimeout;
}

TEST(MessageTimes, AreOneSecondToBeSentAndAnotherToBeAnswered) {
    lumora::notify("message", nullptr, nullptr);
    ASSERT_TRUE(platform::dispatch_wait_until_idle(tests::kLongEnough));
    EXPECT_EQ(sendTimeout, 1.0);
    EXPECT_EQ(receiveTimeout, 1.0);
}
