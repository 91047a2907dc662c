#include "platform/services/PictureDecoder.h"

#include "platform/messaging/Dispatch.h"
#include "platform/services/PictureFrames.h"
#include "platform/ui/PictureSize.h"

#include <sys/stat.h>

#include <cstring>
#include <system_error>
#include <utility>

namespace platform {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

namespace {

constexpr std::size_t kBudget = 4 << 20; // some hundreds of icons as lists show them
/// A program that has ended so often without ever answering is not worth another try.
constexpr int kMostDeaths = 100;

std::atomic<bool> endlessPatience = false;

/// Nothing unless the program may be asked for this picture, from a regular file of sensible size.
std::optional<PictureStamp> stampOf(const PictureWanted& wanted) {
    struct stat state {};
    if (wanted.file.native().size() > PictureQuestion::kLongestPath || wanted.pixels < 1 ||
        std::cmp_greater(wanted.pixels, PictureQuestion::kMostPixels) || ::stat(wanted.file.c_str(), &state) != 0 ||
        !S_ISREG(state.st_mode) || state.st_size > kLargestPictureFile)
        return std::nullopt;
    return PictureStamp{state.st_dev, state.st_ino, state.st_size, state.st_mtim.tv_sec, state.st_mtim.tv_nsec};
}

template<class Frame>
std::string_view bytesOf(const Frame& frame) {
    return {reinterpret_cast<const char*>(&frame), sizeof frame};
}

} // namespace

class PictureOrder {
  public:
    const std::vector<PictureWanted> wanted;
    PictureDecoder::Drawn drawn;
    bool done = false;
    std::function<void(const PictureDecoder::Drawn&)> later; ///< null while its owner waits

    explicit PictureOrder(std::vector<PictureWanted> pictures) : wanted(std::move(pictures)) {}
};

void PicturePatience::makeEndless() {
    endlessPatience = true;
}

PictureDecoder& PictureDecoder::shared() {
    static auto& decoder = *new PictureDecoder(helperProgram("lumora-pictures"), {});
    return decoder;
}

PictureDecoder::PictureDecoder(fs::path program, const Limits& limits)
    : program_(std::move(program)), limits_(limits), known_(kBudget) {
}

PictureDecoder::~PictureDecoder() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

PictureOrderRef PictureDecoder::order(std::vector<PictureWanted> wanted) {
    auto order = std::make_shared<PictureOrder>(std::move(wanted));
    const std::lock_guard lock(mutex_);
    for (const PictureWanted& picture : order->wanted)
        if (std::optional<Data> known = recall(picture)) order->drawn.push_back(std::move(*known));
    order->done = order->drawn.size() == order->wanted.size();
    if (order->done) return order;
    orders_.push_back(order);
    try {
        // Kept on purpose: not a worker of the pool, since the program dies with the thread that started it.
        if (!thread_.joinable()) thread_ = std::thread([this] { work(); });
    } catch (const std::system_error&) { // without a thread there are no pictures
        order->drawn.assign(order->wanted.size(), {});
        order->done = true;
    }
    changed_.notify_all();
    return order;
}

std::optional<PictureDecoder::Drawn> PictureDecoder::wait(const PictureOrderRef& order, PicturePatience& patience,
                                                          std::function<void(const Drawn&)> later) {
    std::unique_lock lock(mutex_);
    const auto isDone = [&] { return order->done; };
    if (endlessPatience) {
        changed_.wait(lock, isDone); // which has an end, since each picture has its limits
        return order->drawn;
    }
    const auto begin = steady_clock::now();
    changed_.wait_until(lock, begin + patience.left_, isDone);
    patience.left_ -= std::min(steady_clock::now() - begin, patience.left_);
    if (order->done) return order->drawn;
    order->later = std::move(later);
    return std::nullopt;
}

void PictureDecoder::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return ending_ || !orders_.empty(); });
        if (ending_) break;
        PictureOrderRef order = orders_.front().lock();
        orders_.pop_front();
        if (!order) continue;
        lock.unlock();
        Drawn drawn;
        for (const PictureWanted& wanted : order->wanted)
            drawn.push_back(draw(wanted));
        lock.lock();
        order->drawn = std::move(drawn);
        order->done = true;
        const bool late = order->later != nullptr;
        // Let go of before the callback, so that only its owner holds the order, and can cancel it on the main thread.
        const std::weak_ptr<PictureOrder> held = std::exchange(order, nullptr);
        if (late)
            dispatch_async(dispatch_get_main_queue(), [held] {
                if (const PictureOrderRef still = held.lock()) still->later(still->drawn);
            });
        changed_.notify_all();
    }
    child_.reset();
}

std::optional<Data> PictureDecoder::recall(const PictureWanted& wanted) {
    const std::optional<PictureStamp> stamp = stampOf(wanted);
    if (!stamp) return Data();
    if (const DrawnPicture* known = known_.find(wanted); known && known->stamp == *stamp) return known->png;
    const auto refused = refused_.find(wanted.file);
    return refused != refused_.end() && refused->second == *stamp ? std::optional<Data>(Data()) : std::nullopt;
}

Data PictureDecoder::draw(const PictureWanted& wanted) {
    {
        const std::lock_guard lock(mutex_);
        if (std::optional<Data> known = recall(wanted)) return *known;
    }
    const std::optional<PictureStamp> stamp = stampOf(wanted);
    Data png;
    Asked asked = Asked::died;
    // Once more when the program dies: another process may have ended it.
    for (int tries = 0; tries < 2 && asked == Asked::died; ++tries) {
        if (!start()) return {};
        asked = ask(wanted, png);
        if (asked == Asked::answered)
            hasAnswered_ = true;
        else
            child_.reset();
        if (asked == Asked::died) ++deaths_;
    }
    if (!stamp) return png;
    const std::lock_guard lock(mutex_);
    if (asked == Asked::answered)
        known_.put(wanted, {*stamp, png});
    else
        refused_.insert_or_assign(wanted.file, *stamp);
    return png;
}

bool PictureDecoder::start() {
    if (child_) return true;
    if (deaths_ >= kMostDeaths && !hasAnswered_) return false;
    auto started = ChildProcess::start({program_.string()}, {.memory = limits_.memory, .descriptors = 64});
    // Silent, as for a picture that cannot be drawn: without the program there are no icons.
    if (!started) return false;
    ++starts_;
    child_ = std::move(started).value();
    return true;
}

PictureDecoder::Asked PictureDecoder::ask(const PictureWanted& wanted, Data& png) {
    const std::string& path = wanted.file.native();
    PictureQuestion question;
    question.number = ++number_;
    question.pixels = static_cast<std::uint32_t>(wanted.pixels);
    question.pathLength = static_cast<std::uint32_t>(path.size());
    const auto patience = child_->patience(limits_.clock, limits_.processor);
    if (!child_->send(bytesOf(question), patience) || !child_->send(path, patience)) return Asked::died;

    PictureAnswer answer;
    std::string bytes;
    for (std::size_t most = sizeof answer;;) {
        const ChildProcess::Heard heard = child_->receive(bytes, most, patience);
        if (heard == ChildProcess::Heard::tooLate || heard == ChildProcess::Heard::tooCostly) return Asked::tooDear;
        if (heard != ChildProcess::Heard::something) return Asked::died;
        if (bytes.size() < most) continue;
        std::memcpy(&answer, bytes.data(), sizeof answer);
        // The header is complete, and the same in each round from here on.
        if (answer.mark != PictureAnswer::kMark || answer.number != question.number ||
            answer.length > PictureAnswer::longestFor(question.pixels))
            return Asked::died;
        most = sizeof answer + answer.length;
        if (bytes.size() == most) break;
    }
    png.assign(bytes.begin() + sizeof answer, bytes.end());
    const bool asAsked = pictureSize(png) == CGSize{double(wanted.pixels), double(wanted.pixels)};
    if (png.empty() || asAsked) return Asked::answered;
    png.clear();
    return Asked::died;
}

} // namespace platform
