#include "probe/DrawingJudge.h"

#include "appview/AnswerOf.h"
#include "appview/Drawing.h"
#include "appview/ViewAnswers.h"
#include "appview/ViewHost.h"
#include "lockscreen/Canvas.h"
#include "lockscreen/Luminance.h"
#include "lockscreen/RoleColors.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>
#include <malloc.h>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

namespace lumora {

using namespace platform;
using Kind = DrawingStep::Kind;
using std::chrono::nanoseconds;
using Clock = std::chrono::steady_clock;

namespace {

constexpr double kLeastContrast = 4.5;
/// Of a font's size, above the baseline and below it: what letters take of their line.
constexpr double kCapitals = 0.73;
constexpr double kDescent = 0.24;
/// In points; nobody sees less.
constexpr double kNearly = 1;

constexpr int kDrawings = 1000;
constexpr int kDrawingsBefore = 100; // by then, all is there that a plug-in keeps
/// In bytes: half of what is lost by the smallest piece of memory at each drawing, which takes 32.
constexpr std::size_t kLostAtMost = std::size_t{16} * (kDrawings - kDrawingsBefore);
constexpr std::chrono::seconds kForLeaks(5); // of the processor
constexpr std::chrono::seconds kForLeaksByClock(20);

nanoseconds processorTime() {
    std::timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

std::size_t bytesInUse() {
    const auto heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

/// Rounded down, so that what is too little never reads as enough.
std::string oneDecimal(double number) {
    const auto tenths = static_cast<int>(number * 10);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

struct Box {
    double left;
    double top;
    double right;
    double bottom;
};

/// How far the inner box reaches beyond the other one; at most 0 for not at all.
double beyond(const Box& inner, const Box& outer) {
    return std::max(
        {outer.left - inner.left, outer.top - inner.top, inner.right - outer.right, inner.bottom - outer.bottom});
}

/// A rectangle's numbers, as those of steps.
Box boxOf(const std::vector<double>& n) {
    return {n[0], n[1], n[0] + n[2], n[1] + n[3]};
}

Box lettersOf(const std::vector<double>& n) {
    return {n[0], n[1] - kCapitals * n[3], n[0] + n[2], n[1] + kDescent * n[3]};
}

struct Paint {
    Color color;
    double opacity = 1;
    bool forTexts = true; ///< a role's colour that is, as it was given
};
/// One colour, or the two ends of a gradient.
using Fill = std::vector<Paint>;

/// What is behind a text.
struct Behind {
    double darkest = 0; ///< luminances
    double brightest = 0;
    bool isCard = true;
    bool isKnown = true;
};

/// Reads the steps of a drawing in their order, with what lies on the card so far.
///
/// A card is a frosted pane over the user's wallpaper. The lock screen tints it until secondary texts (in white, or ink
/// where `dark` is 0) have a contrast of kEnough at the worst place, and no further. So this is what is assumed: behind
/// white lies anything from black to the brightest that leaves them that contrast, and behind ink anything from white
/// to the darkest that does so. Wallpapers get there.
///
/// The roles of texts, secondary texts and accents are the lock screen's choice for this ground, so they count as
/// legible there. On what a plug-in has laid between, they are colours like any other. A rectangle or circle counts
/// that is behind all of a text, unless it is as faint as a separator; behind a path, a piece of a pie or a picture
/// nothing is known, and a text on these is not judged.
class LegibilityJudge {
  public:
    explicit LegibilityJudge(bool dark) : ink_(dark ? kWhite : kInk), dark_(dark), fill_{{ink_}} {
        const LegibleGrounds grounds = groundsFor(kSecondaryShare);
        card_ = dark ? Behind{0, grounds.brightest} : Behind{grounds.darkest, 1};
    }

    /// The contrast of a text; nothing for other steps and where nothing is known.
    std::optional<double> read(const DrawingStep& step) {
        const auto& n = step.numbers;
        switch (step.kind) {
        case Kind::color:
            fill_ = {paint(n, 0)};
            break;
        case Kind::gradient:
            fill_ = {paint(n, 2), paint(n, 9)};
            break;
        case Kind::clip:
            clip_ = n[2] > 0 ? std::optional(boxOf(n)) : std::nullopt;
            break;
        case Kind::rectangle:
            cover(boxOf(n));
            break;
        case Kind::arc:
            if (n[5] == 0) cover({n[0] - n[2], n[1] - n[2], n[0] + n[2], n[1] + n[2]}, true, std::abs(n[4]) >= 360);
            break;
        case Kind::path:
            if (n[0] == 0) coverByPath(n);
            break;
        case Kind::picture:
            cover({n[0], n[1], n[0] + n[2], n[1] + n[2]}, false, false);
            break;
        case Kind::text:
            return contrastOf(lettersOf(n));
        default:
            break;
        }
        return {};
    }

  private:
    struct Cover {
        Box box;
        Fill fill;
        bool isRound;
        bool isKnown;
    };

    [[nodiscard]] Paint paint(const std::vector<double>& n, std::size_t at) const {
        const double opacity = n[at + 4];
        switch (static_cast<std::uint32_t>(n[at])) {
        case LUMORA_ROLE_TEXT:
            return {ink_, opacity, opacity >= kSecondaryShare};
        case LUMORA_ROLE_SECONDARY:
            return {ink_, opacity * kSecondaryShare, opacity >= 1};
        case LUMORA_ROLE_ACCENT:
            return {dark_ ? kAccentOnDark : kAccentOnLight, opacity, opacity >= 1};
        case LUMORA_ROLE_SEPARATOR:
            return {ink_, opacity * kSeparatorShare, false};
        default:
            return {{n[at + 1], n[at + 2], n[at + 3]}, opacity, false};
        }
    }

    void cover(Box box, bool isRound = false, bool isKnown = true) {
        if (clip_)
            box = {std::max(box.left, clip_->left), std::max(box.top, clip_->top), std::min(box.right, clip_->right),
                   std::min(box.bottom, clip_->bottom)};
        covers_.push_back({box, fill_, isRound, isKnown});
    }
    void coverByPath(const std::vector<double>& n) {
        constexpr double far = DrawingLimits::points;
        Box box{far, far, -far, -far};
        for (std::size_t at = 1; at < n.size();) {
            const std::size_t end = at + 1 + coordinatesOf(static_cast<PathPart>(n[at]));
            for (++at; at < end; at += 2)
                box = {std::min(box.left, n[at]), std::min(box.top, n[at + 1]), std::max(box.right, n[at]),
                       std::max(box.bottom, n[at + 1])};
        }
        cover(box, false, false);
    }

    static bool isBehind(const Cover& cover, const Box& letters) {
        if (beyond(letters, cover.box) > kNearly) return false;
        if (!cover.isRound || !cover.isKnown) return true;
        const double x = (cover.box.left + cover.box.right) / 2;
        const double y = (cover.box.top + cover.box.bottom) / 2;
        return std::hypot(std::max(letters.right - x, x - letters.left),
                          std::max(letters.bottom - y, y - letters.top)) <=
               (cover.box.right - cover.box.left) / 2 + kNearly;
    }

    [[nodiscard]] Behind behind(const Box& letters) const {
        Behind all = card_;
        for (const Cover& cover : covers_) {
            if (!isBehind(cover, letters)) continue;
            if (!cover.isKnown) all.isKnown = false;
            if (!cover.isKnown || std::ranges::max(cover.fill, {}, &Paint::opacity).opacity <= kSeparatorShare)
                continue;
            const Behind below = std::exchange(all, {1, 0, false, all.isKnown});
            for (const Paint& paint : cover.fill)
                for (const double place : {below.darkest, below.brightest}) {
                    const double seen = laidOver(place, paint.color, paint.opacity);
                    all.darkest = std::min(all.darkest, seen);
                    all.brightest = std::max(all.brightest, seen);
                }
            if (std::ranges::min(cover.fill, {}, &Paint::opacity).opacity >= 1) all.isKnown = true;
        }
        return all;
    }

    [[nodiscard]] std::optional<double> contrastOf(const Box& letters) const {
        const Behind ground = behind(letters);
        if (!ground.isKnown || (ground.isCard && std::ranges::all_of(fill_, &Paint::forTexts))) return {};
        double least = std::numeric_limits<double>::infinity();
        for (const Paint& paint : fill_)
            for (const double place : {ground.darkest, ground.brightest})
                least = std::min(least, contrast(laidOver(place, paint.color, paint.opacity), place));
        return least;
    }

    const Color ink_;
    const bool dark_;
    Behind card_;
    Fill fill_;
    std::optional<Box> clip_;
    std::vector<Cover> covers_;
};

/// Of each kind the first.
class Findings {
  public:
    void add(const char* check, const std::string& what) {
        if (known_.insert(check).second) list_.emplace_back(Dictionary{{"check", check}, {"what", what}});
    }
    [[nodiscard]] Dictionary told() const { return {{"findings", list_}}; }

  private:
    std::set<std::string> known_;
    List list_;
};

} // namespace

std::vector<DrawingQuestion> questionsToJudge() {
    // Room for a drawing on cards of phones that are upright, and on a wide card of one that lies.
    constexpr std::array<std::pair<double, double>, 3> sizes{{{320, 260}, {390, 260}, {844, 218}}};
    std::tm time{}; // with long names
    time.tm_year = 126;
    time.tm_mon = 8;
    time.tm_mday = 30;
    time.tm_hour = 20;
    time.tm_min = 58;
    ::timegm(&time); // finds the day of the week
    std::vector<DrawingQuestion> questions;
    for (const auto& [width, height] : sizes)
        for (const bool dark : {true, false})
            for (const double textScale : {1.0, 2.0})
                questions.push_back({width, height, textScale, dark, time, {}});
    return questions;
}

std::string placeOf(const DrawingQuestion& question) {
    return std::to_string(std::lround(question.width)) + " × " + std::to_string(std::lround(question.height)) +
           " points, " + (question.dark ? "dark" : "light") + ", texts at " +
           std::to_string(std::lround(question.textScale * 100)) + " %";
}

Dictionary judgeDrawing(const Plugin& plugin, const DrawingQuestion& question, const TextExtents& extents) {
    const std::string place = "drawn at " + placeOf(question) + ", ";
    Findings findings;
    const Clock::time_point begin = Clock::now();
    const nanoseconds before = processorTime();
    const DrawingAnswer answer = answerOf(plugin, question, extents, memoryToDraw());
    const auto took = std::chrono::ceil<std::chrono::milliseconds>(processorTime() - before);
    const auto waited = std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - begin);
    if (took > ViewHost::Limits().processor)
        findings.add("draw-time", place + "it takes " + std::to_string(took.count()) + " ms of the processor");
    if (waited > ViewHost::Limits().clock)
        findings.add("draw-time", place + "it takes " + std::to_string(waited.count()) + " ms by the clock");
    if (answer.letter != kDrawnAnswer) {
        findings.add(answer.letter == kTooMuchAnswer ? "draw-size" : "draw", place + answer.text);
        return findings.told();
    }
    const auto drawing = readDrawing(Data(answer.text.begin(), answer.text.end()));
    LegibilityJudge legibility(question.dark);
    const Box card{0, 0, question.width, question.height};
    for (const DrawingStep& step : drawing ? drawing.value().steps : std::vector<DrawingStep>()) {
        const auto contrast = legibility.read(step);
        const std::string text = place + "the text \"" + step.text + "\" ";
        if (contrast && *contrast < kLeastContrast)
            findings.add("contrast", text + "has a contrast of " + oneDecimal(*contrast) + " : 1");
        const double outside = step.kind == Kind::text ? beyond(lettersOf(step.numbers), card) : 0;
        if (outside > kNearly)
            findings.add("outside",
                         text + "reaches " + std::to_string(std::lround(outside)) + " points beyond the card");
    }
    return findings.told();
}

Dictionary judgeLeaks(const Plugin& plugin, const DrawingQuestion& question, const TextExtents& extents) {
    DrawingQuestion next = question;
    Findings findings;
    std::size_t before = 0;
    int count = 0;
    const Clock::time_point end = Clock::now() + kForLeaksByClock;
    for (; count < kDrawings && processorTime() < kForLeaks && Clock::now() < end; ++count) {
        if (count == kDrawingsBefore) before = bytesInUse();
        std::ignore = answerOf(plugin, next, extents, memoryToDraw());
        ++next.time.tm_min;
        ::timegm(&next.time);
    }
    const std::size_t after = bytesInUse();
    if (count > kDrawingsBefore && after > before + kLostAtMost)
        findings.add("leak", std::to_string(count - kDrawingsBefore) + " drawings leave " +
                                 std::to_string((after - before) / 1024) + " KB behind");
    return findings.told();
}

} // namespace lumora
