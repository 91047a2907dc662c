#include "appview/TextExtents.h"

#include "appview/ScreenFont.h"
#include "platform/foundation/Unicode.h"
#include "platform/ui/UIFont.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <hb-ot.h>
#include <hb.h>
#include <iterator>
#include <tuple>
#include <utility>

namespace lumora {
namespace {

constexpr double kEstimate = 0.6; // of the size, for a character of a font that is not there
constexpr std::array<const char*, 9> kWeights{"Thin",     "ExtraLight", "Light",     "Regular", "Medium",
                                              "SemiBold", "Bold",       "ExtraBold", "Black"};
constexpr const char* kEllipsis = "…";

/// Where each character of a text ends.
std::vector<std::size_t> endsIn(std::string_view text) {
    std::vector<std::size_t> ends;
    for (std::string_view rest = text; !rest.empty(); ends.push_back(text.size() - rest.size()))
        std::ignore = platform::takeCharacter(rest);
    return ends;
}

std::shared_ptr<hb_font_t> open(const std::string& name) {
    const platform::UIFontRef font = platform::UIFont::fontWithName(name, 1);
    hb_blob_t* blob = font ? hb_blob_create_from_file_or_fail(font->file().c_str()) : nullptr;
    if (!blob) return nullptr;
    hb_face_t* face = hb_face_create(blob, static_cast<unsigned>(font->index()) & 0xFFFFU);
    std::shared_ptr<hb_font_t> opened(hb_font_create(face), hb_font_destroy);
    // One of a variable font's instances.
    if (const int instance = font->index() >> 16; instance > 0)
        hb_font_set_var_named_instance(opened.get(), static_cast<unsigned>(instance) - 1);
    hb_face_destroy(face);
    hb_blob_destroy(blob);
    return opened;
}

} // namespace

TextExtents::TextExtents() {
    for (std::size_t i = 0; i < kWeights.size(); ++i) {
        const int weight = static_cast<int>(i + 1) * 100;
        if (auto font = open(std::string("Inter-") + kWeights.at(i))) text_.emplace(weight, std::move(font));
        if (auto font = open(std::string("InterDisplay-") + kWeights.at(i))) display_.emplace(weight, std::move(font));
    }
}

hb_font_t* TextExtents::font(double size, double weight) const {
    const Family& family = size < kSmallestDisplay ? text_ : display_;
    const auto nearest =
        std::ranges::min_element(family, {}, [weight](const auto& font) { return std::abs(font.first - weight); });
    return nearest == family.end() ? nullptr : nearest->second.get();
}

double TextExtents::width(std::string_view text, double size, double weight) const {
    hb_font_t* const font = this->font(size, weight);
    if (!font) return kEstimate * size * static_cast<double>(endsIn(text).size());
    const std::unique_ptr<hb_buffer_t, decltype(&hb_buffer_destroy)> buffer(hb_buffer_create(), hb_buffer_destroy);
    hb_buffer_add_utf8(buffer.get(), text.data(), static_cast<int>(text.size()), 0, -1);
    hb_buffer_guess_segment_properties(buffer.get());
    hb_shape(font, buffer.get(), nullptr, 0);
    unsigned count = 0;
    const hb_glyph_position_t* glyphs = hb_buffer_get_glyph_positions(buffer.get(), &count);
    double units = 0;
    for (unsigned i = 0; i < count; ++i)
        units += glyphs[i].x_advance;
    return units * size / std::max(1U, hb_face_get_upem(hb_font_get_face(font)));
}

std::string TextExtents::cut(std::string text, double size, double weight, double most) const {
    if (most <= 0 || width(text, size, weight) <= most) return text;
    const std::vector<std::size_t> ends = endsIn(text);
    const auto tooFar = std::ranges::partition_point(
        ends, [&](std::size_t end) { return width(text.substr(0, end) + kEllipsis, size, weight) <= most; });
    std::size_t fits = tooFar == ends.begin() ? 0 : *std::prev(tooFar);
    while (fits > 0 && text[fits - 1] == ' ')
        --fits;
    return text.substr(0, fits) + kEllipsis;
}

std::vector<std::string> TextExtents::lines(std::string_view text, double size, double weight, double most,
                                            std::size_t count) const {
    std::vector<std::string> lines;
    while (lines.size() + 1 < count && most > 0 && width(text, size, weight) > most) {
        std::size_t end = 0;
        for (std::size_t next = text.find(' '); next != std::string_view::npos; next = text.find(' ', next + 1)) {
            if (width(text.substr(0, next), size, weight) > most) break;
            end = next;
        }
        if (end == 0) break; // a word that is wider than the line
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    if (!text.empty() || lines.empty()) lines.push_back(cut(std::string(text), size, weight, most));
    return lines;
}

} // namespace lumora
