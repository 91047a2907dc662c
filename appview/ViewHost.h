#pragma once

#include "appview/Drawing.h"
#include "appview/Question.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace lumora {

/// What came of a question.
struct ViewAnswer {
    enum class Outcome : unsigned char {
        drawn,
        tooMuch, ///< the drawing is beyond the limits, and there is none
        stopped, ///< the plug-in has ended or damaged its process, is too slow or answers what is no drawing
    };
    Outcome outcome = Outcome::stopped;
    std::uint64_t question = 0; ///< its number
    Drawing drawing;
    std::string why; ///< unless drawn
};

/// A plug-in that draws its App View, in a process of its own, `lumora-appview`, which ends with this object.
///
///     ViewHost host(bundle, [](const ViewAnswer& answer) { …; return [=] { … }; });
///     host.draw(question);
///
/// Nothing here waits. The process starts with the first question; of several that wait, only the last one counts. One
/// that ends or is late is started and asked once more, and then the host is of no more use. Any thread.
class ViewHost {
  public:
    /// Makes something of an answer, on the host's own thread, and may still be at it when the host is gone. What it
    /// returns is called on that thread next, and not once the host is gone.
    using Listener = std::function<std::function<void()>(const ViewAnswer& answer)>;

    /// For one drawing, and until the plug-in is loaded.
    struct Limits {
        std::chrono::milliseconds processor{100};
        std::chrono::milliseconds clock{2000}; ///< more, since other programs compute as well
        std::chrono::milliseconds starting{10'000};
        std::chrono::milliseconds startingProcessor{2000};
    };

    ViewHost(std::filesystem::path bundle, Listener listener)
        : ViewHost(std::move(bundle), std::move(listener), Limits()) {}
    ViewHost(std::filesystem::path bundle, Listener listener, const Limits& limits);
    ViewHost(const ViewHost&) = delete;
    ViewHost& operator=(const ViewHost&) = delete;
    /// Waits for no more than a call of what the listener has returned. Not within that.
    ~ViewHost();

    /// The number of the question, counted from 1.
    std::uint64_t draw(DrawingQuestion question);

  private:
    class Worker;
    std::shared_ptr<Worker> worker_;
};

} // namespace lumora
