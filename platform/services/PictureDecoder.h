#pragma once

#include "platform/foundation/ChildProcess.h"
#include "platform/foundation/HelperProgram.h"
#include "platform/services/PictureStore.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace platform {

/// Pictures that were asked for. Letting go of the order cancels it.
class PictureOrder;
using PictureOrderRef = std::shared_ptr<PictureOrder>;

/// How long a view waits for all of its pictures together. One thread at a time.
class PLATFORM_EXPORT PicturePatience {
  public:
    explicit PicturePatience(std::chrono::nanoseconds inAll) : left_(inAll) {}
    /// For a program that only takes complete pictures of its pages: makes all patience endless, so that only the
    /// decoder's own limits end the waiting. To be called before anything else.
    static void makeEndless();

  private:
    friend class PictureDecoder;
    std::chrono::nanoseconds left_;
};

/// Draws strangers' pictures: icons of installed applications. Drawing one may take hours or all memory, or break the
/// program that draws, by chance or by malice. So another program draws: lumora-pictures, which is started when it is
/// first needed, stays, and is started again after its end. The decoder ends it when a picture takes too much time of
/// the processor or of the clock. That picture is not tried again while this object lives and its file stays as it is,
/// and neither is one at which the program breaks twice.
///
///     PicturePatience patience(100ms);
///     auto order = decoder.order({{"/usr/share/icons/a.svg", 29}});
///     if (const auto drawn = decoder.wait(order, patience, [](const auto& late) { … })) show(drawn->front());
///
/// Any thread. The decoder's own thread asks the program and waits for it.
class PLATFORM_EXPORT PictureDecoder {
  public:
    struct Limits {
        std::chrono::milliseconds processor{1000}; ///< for one picture
        std::chrono::milliseconds clock{5000};     ///< for one picture
        std::uint64_t memory = 512 << 20;          ///< of address space, in bytes
    };
    /// PNG files in the order in which they were wanted; an empty one for each picture that cannot be drawn.
    using Drawn = std::vector<Data>;

    /// The decoder that all views share; never destroyed.
    [[nodiscard]] static PictureDecoder& shared();

    PictureDecoder(std::filesystem::path program, const Limits& limits);
    PictureDecoder(const PictureDecoder&) = delete;
    PictureDecoder& operator=(const PictureDecoder&) = delete;
    /// Ends the program once it has drawn its present picture or given it up.
    ~PictureDecoder();

    /// Asks for pictures. Orders are drawn in their order; one whose pictures are all known is done at once.
    [[nodiscard]] PictureOrderRef order(std::vector<PictureWanted> wanted);
    /// Waits until all pictures of an order are drawn. Nothing when patience ends first: then `later` is called with
    /// them on the main queue, once, if the order is still held.
    [[nodiscard]] std::optional<Drawn> wait(const PictureOrderRef& order, PicturePatience& patience,
                                            std::function<void(const Drawn&)> later);

    /// How often the program has been started.
    [[nodiscard]] int starts() const { return starts_; }

  private:
    enum class Asked : unsigned char { answered, died, tooDear };

    void work();
    /// What is known of a picture without drawing it. Under the mutex.
    [[nodiscard]] std::optional<Data> recall(const PictureWanted& wanted);
    [[nodiscard]] Data draw(const PictureWanted& wanted);
    [[nodiscard]] bool start();
    [[nodiscard]] Asked ask(const PictureWanted& wanted, Data& png);

    const std::filesystem::path program_;
    const Limits limits_;
    std::atomic<int> starts_ = 0;

    std::mutex mutex_; ///< over what follows, and what is in orders
    std::condition_variable changed_;
    std::deque<std::weak_ptr<PictureOrder>> orders_;
    PictureStore known_;
    std::map<std::filesystem::path, PictureStamp> refused_;
    bool ending_ = false;
    std::thread thread_;

    // What follows belongs to the decoder's thread.
    std::unique_ptr<ChildProcess> child_;
    bool hasAnswered_ = false;
    int deaths_ = 0;
    std::uint32_t number_ = 0;
};

} // namespace platform
