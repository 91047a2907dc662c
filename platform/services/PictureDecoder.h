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

/// Pictures that somebody asked for. As soon as nobody holds an order any more, it is neither drawn nor told of.
class PictureOrder;
using PictureOrderRef = std::shared_ptr<PictureOrder>;

/// How long somebody, a view of rows for instance, waits for pictures in all, whatever number of them.
class PLATFORM_EXPORT PicturePatience {
  public:
    explicit PicturePatience(std::chrono::nanoseconds inAll) : left_(inAll) {}
    /// For a program that shows nothing before all of it is there: nobody loses patience from now on, and only the
    /// decoder's own limits end the waiting. To be called before anything else.
    static void makeEndless();

  private:
    friend class PictureDecoder;
    std::chrono::nanoseconds left_;
};

/// Draws pictures of strangers: icons of installed applications. Whoever made one may have made it, on purpose or not,
/// so that drawing it takes hours, or all memory, or breaks the program that draws. So it is another one that does:
/// lumora-pictures, which is started when it is first needed, stays, is asked over its standard input, and is started
/// again when it has ended. It is ended when a picture takes too much of the processor or of the clock; that picture is
/// not tried again for as long as this object lives and its file stays as it is, and neither is one with which it
/// breaks twice.
///
///     PicturePatience patience(100ms);
///     auto order = decoder.order({{"/usr/share/icons/a.svg", 29}}, [] { … });   // later, on the main thread
///     if (const auto drawn = decoder.wait(order, patience)) show(drawn->front());
///
/// Any thread. A thread of its own asks the program and waits for it.
class PLATFORM_EXPORT PictureDecoder {
  public:
    struct Limits {
        std::chrono::milliseconds processor{1000}; ///< for one picture, as is the next
        std::chrono::milliseconds clock{5000};
        std::uint64_t memory = 512 << 20; ///< of address space, in bytes
    };
    /// PNG files in the order of what was wanted; empty for what cannot be drawn.
    using Drawn = std::vector<Data>;

    /// The one that all views share; never destroyed.
    [[nodiscard]] static PictureDecoder& shared();

    PictureDecoder(std::filesystem::path program, const Limits& limits);
    PictureDecoder(const PictureDecoder&) = delete;
    PictureDecoder& operator=(const PictureDecoder&) = delete;
    /// Ends the program, once the picture that it is drawing has been drawn or given up.
    ~PictureDecoder();

    /// Asks for pictures. Those that were asked for first come first, and those that are known at once.
    [[nodiscard]] PictureOrderRef order(std::vector<PictureWanted> wanted);
    /// Waits until all pictures of an order are there, or patience is at its end: then nothing, and `later` is called
    /// with them on the main queue, once, if the order is still held.
    [[nodiscard]] std::optional<Drawn> wait(const PictureOrderRef& order, PicturePatience& patience,
                                            std::function<void(const Drawn&)> later);

    /// How often the program was started.
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

    // What follows belongs to the thread.
    std::unique_ptr<ChildProcess> child_;
    bool hasAnswered_ = false;
    int deaths_ = 0;
    std::uint32_t number_ = 0;
};

} // namespace platform
