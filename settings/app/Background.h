#pragma once

#include <QMetaObject>
#include <QObject>

#include <exception>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace settings {

/// Has work done on a thread of its own, and its result taken on the GUI thread. The context lives until the process ends,
/// which waits for no such work. Where that throws, or no thread is to be had, the result is a failure that says why, or
/// is empty if it is of a type without failures.
void inBackground(QObject& context, auto work, auto take) {
    using Outcome = decltype(work());
    const auto hand = [&context, take = std::move(take)](Outcome outcome) {
        auto result = std::make_shared<Outcome>(std::move(outcome));
        QMetaObject::invokeMethod(
            &context, [result, take] { take(std::move(*result)); }, Qt::QueuedConnection);
    };
    const auto failure = [](const char* why) -> Outcome {
        if constexpr (requires { Outcome::failure(std::string()); })
            return Outcome::failure(why);
        else
            return Outcome();
    };
    try {
        std::thread([hand, failure, work = std::move(work)] {
            try {
                hand(work());
            } catch (const std::exception& error) {
                hand(failure(error.what()));
            } catch (...) {
                hand(failure("for a reason that is not known"));
            }
        }).detach();
    } catch (const std::system_error& error) {
        hand(failure(error.what()));
    }
}

} // namespace settings
