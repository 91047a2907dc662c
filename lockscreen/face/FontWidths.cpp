#include "lockscreen/face/FontWidths.h"

#include "fonts/FontFaces.h"

#include "platform/ui/UIFont.h"

#include <QFontInfo>
#include <QFontMetricsF>

#include <optional>
#include <string_view>

namespace lumora {
namespace {

constexpr double kMeasuredAt = 100;           // points, for all sizes
constexpr std::size_t kKeptBytes = 256 << 10; // of texts
constexpr double kClockSpacing = -0.018;      // of its size, between its letters

/// In points of the toolkit, whatever it takes them for: only so can a size be a fraction.
double toolkitPoints(double size) {
    static const double pixels = [] {
        QFont inch;
        inch.setPointSizeF(72);
        return QFontInfo(inch).pixelSize();
    }();
    return pixels > 0 ? size * 72 / pixels : size;
}

QFont unhinted(const QString& family, double size, QFont::Weight weight) {
    QFont font(family);
    font.setPointSizeF(toolkitPoints(size));
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

/// As many bytes as are measured, and no half character.
std::string_view beginning(std::string_view text) {
    if (text.size() <= FontWidths::kMostBytes) return text;
    std::size_t end = FontWidths::kMostBytes;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.substr(0, end);
}

double widthIn(const QFont& font, const QString& text) {
    return QFontMetricsF(font).horizontalAdvance(text);
}

/// The width in an installed font of that name; nothing without one that has all the letters.
std::optional<double> widthIn(const std::string& name, const QString& text) {
    const auto font = platform::UIFont::fontWithName(name, kMeasuredAt);
    const auto outline = font ? fonts::FontFaces::shared().outline(*font, text) : std::nullopt;
    return outline ? std::optional(outline->width) : std::nullopt;
}

} // namespace

QFont textFont(double size, QFont::Weight weight) {
    return unhinted(QStringLiteral("Inter"), size, weight);
}

QFont displayFont(double size, QFont::Weight weight) {
    return unhinted(QStringLiteral("Inter Display"), size, weight);
}

QFont clockFont(double size) {
    QFont font = displayFont(size, QFont::Light);
    font.setLetterSpacing(QFont::AbsoluteSpacing, kClockSpacing * size);
    return font;
}

double FontWidths::width(const std::string& text, const std::string& font, double size) const {
    const bool large = size > kLargestText;
    const std::string_view words = beginning(text);
    const std::string key = font + (large ? "\nlarge " : "\nsmall ") + std::string(words);
    if (const auto known = known_.find(key); known != known_.end()) return known->second * size;
    if (bytes_ + key.size() > kKeptBytes) {
        known_.clear();
        bytes_ = 0;
    }
    ++measured_;
    const QString line = QString::fromUtf8(words.data(), qsizetype(words.size()));
    const auto chosen = font == "Default" ? std::nullopt : widthIn(font, line);
    const double wide =
        chosen ? *chosen : widthIn(large ? clockFont(kMeasuredAt) : textFont(kMeasuredAt, QFont::DemiBold), line);
    bytes_ += key.size();
    known_.emplace(key, wide / kMeasuredAt);
    return wide / kMeasuredAt * size;
}

bool FontWidths::has(const std::string& font) const {
    return platform::UIFont::fontWithName(font, kMeasuredAt) != nullptr;
}

} // namespace lumora
