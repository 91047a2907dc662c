#include "fonts/FontFaces.h"

#include "platform/ui/UIFontStream.h"

#include FT_OUTLINE_H

#include <hb-ft.h>
#include <hb.h>
#include <unicode/ubidi.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace fonts {

using platform::UIFont;
using platform::UIFontStream;

namespace {

constexpr std::size_t kOpenFaces = 48;                                  // more than a window shows
constexpr FT_Int32 kLoadFlags = FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP; // shapes as on paper
constexpr double kUnits = 64;                                           // of a point
constexpr int kMostSteps = 100000; // in a text's outline; no honest title has so many

template<class Thing>
using Owned = std::unique_ptr<Thing, void (*)(Thing*)>;

QPointF pointOf(const FT_Vector& place) {
    return {double(place.x) / kUnits, -double(place.y) / kUnits};
}

/// Adds the outline of the loaded glyph, which consists of closed contours, to a path.
bool addGlyph(QPainterPath& path, FT_Outline& outline) {
    FT_Outline_Funcs steps{};
    steps.move_to = [](const FT_Vector* to, void* into) {
        static_cast<QPainterPath*>(into)->closeSubpath();
        static_cast<QPainterPath*>(into)->moveTo(pointOf(*to));
        return 0;
    };
    steps.line_to = [](const FT_Vector* to, void* into) {
        static_cast<QPainterPath*>(into)->lineTo(pointOf(*to));
        return 0;
    };
    steps.conic_to = [](const FT_Vector* by, const FT_Vector* to, void* into) {
        static_cast<QPainterPath*>(into)->quadTo(pointOf(*by), pointOf(*to));
        return 0;
    };
    steps.cubic_to = [](const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* into) {
        static_cast<QPainterPath*>(into)->cubicTo(pointOf(*first), pointOf(*second), pointOf(*to));
        return 0;
    };
    if (FT_Outline_Decompose(&outline, &steps, &path) != 0) return false;
    path.closeSubpath();
    return true;
}

/// A part of a text in one script and one direction: as much as can be shaped at once.
struct Run {
    int start = 0;
    int length = 0;
    hb_script_t script = HB_SCRIPT_COMMON;
    bool rightToLeft = false;
};

/// Characters without a script of their own join the part before them, and at the beginning the part after.
std::vector<Run> runsByScript(const QString& text, int start, int end, bool rightToLeft) {
    hb_unicode_funcs_t* const unicode = hb_unicode_funcs_get_default();
    std::vector<Run> runs{{start, 0, HB_SCRIPT_COMMON, rightToLeft}};
    while (start < end) {
        const bool isPair = start + 1 < end && text[start].isHighSurrogate() && text[start + 1].isLowSurrogate();
        const int units = isPair ? 2 : 1;
        const char32_t sign =
            isPair ? QChar::surrogateToUcs4(text[start], text[start + 1]) : char32_t(text[start].unicode());
        const hb_script_t script = hb_unicode_script(unicode, sign);
        const bool hasScript =
            script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED && script != HB_SCRIPT_UNKNOWN;
        if (hasScript && runs.back().script == HB_SCRIPT_COMMON) runs.back().script = script;
        if (hasScript && runs.back().script != script) runs.push_back({start, 0, script, rightToLeft});
        runs.back().length += units;
        start += units;
    }
    return runs;
}

/// The parts of a line from left to right.
std::vector<Run> runsOf(const QString& text, bool& rightToLeft) {
    std::vector<Run> runs;
    const Owned<UBiDi> bidi(ubidi_open(), ubidi_close);
    UErrorCode error = U_ZERO_ERROR;
    const auto* units = reinterpret_cast<const UChar*>(text.utf16());
    ubidi_setPara(bidi.get(), units, int(text.size()), UBIDI_DEFAULT_LTR, nullptr, &error);
    const int count = ubidi_countRuns(bidi.get(), &error);
    if (U_FAILURE(error)) return runs;
    rightToLeft = ubidi_getParaLevel(bidi.get()) % 2 != 0;
    for (int i = 0; i < count; ++i) {
        int start = 0;
        int length = 0;
        const bool backwards = ubidi_getVisualRun(bidi.get(), i, &start, &length) == UBIDI_RTL;
        std::vector<Run> parts = runsByScript(text, start, start + length, backwards);
        if (backwards) std::reverse(parts.begin(), parts.end());
        runs.insert(runs.end(), parts.begin(), parts.end());
    }
    return runs;
}

} // namespace

/// One open font.
class FontFaces::Face {
  public:
    Face(FT_Library library, const UIFont& font) : stream_(font.file()) {
        FT_Face opened = stream_.open(library, font.index());
        if (!opened) return;
        face_.reset(opened);
        const auto size = FT_F26Dot6(font.pointSize() * kUnits);
        if (FT_IS_SCALABLE(opened) == 0 || FT_Set_Char_Size(opened, size, size, 72, 72) != 0) return;
        shaper_.reset(hb_ft_font_create_referenced(opened));
        hb_ft_font_set_load_flags(shaper_.get(), kLoadFlags);
    }

    explicit operator bool() const { return shaper_ != nullptr; }

    std::optional<TextOutline> outline(const QString& text) {
        TextOutline drawn;
        drawn.path.setFillRule(Qt::WindingFill);
        for (const Run& run : runsOf(text, drawn.rightToLeft))
            if (!add(run, text, drawn)) return std::nullopt;
        if (drawn.path.isEmpty()) return std::nullopt; // a font of blanks
        return drawn;
    }

  private:
    bool add(const Run& run, const QString& text, TextOutline& drawn) {
        const Owned<hb_buffer_t> buffer(hb_buffer_create(), hb_buffer_destroy);
        hb_buffer_add_utf16(buffer.get(), reinterpret_cast<const std::uint16_t*>(text.utf16()), int(text.size()),
                            unsigned(run.start), run.length);
        hb_buffer_set_direction(buffer.get(), run.rightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
        hb_buffer_set_script(buffer.get(), run.script);
        hb_buffer_set_language(buffer.get(), hb_language_get_default());
        hb_shape(shaper_.get(), buffer.get(), nullptr, 0);

        unsigned count = 0;
        const hb_glyph_info_t* glyphs = hb_buffer_get_glyph_infos(buffer.get(), &count);
        const hb_glyph_position_t* places = hb_buffer_get_glyph_positions(buffer.get(), &count);
        for (unsigned i = 0; i < count; ++i) {
            const unsigned number = glyphs[i].codepoint;
            if (number == 0 || FT_Load_Glyph(face_.get(), number, kLoadFlags) != 0) return false;
            FT_GlyphSlot glyph = face_->glyph;
            if (glyph->format != FT_GLYPH_FORMAT_OUTLINE) return false;
            QPainterPath outline;
            if (!addGlyph(outline, glyph->outline)) return false;
            if (drawn.path.elementCount() + outline.elementCount() > kMostSteps) return false;
            outline.translate(drawn.width + places[i].x_offset / kUnits, -places[i].y_offset / kUnits);
            drawn.path.addPath(outline);
            drawn.width += places[i].x_advance / kUnits;
        }
        return true;
    }

    UIFontStream stream_;
    Owned<FT_FaceRec> face_{nullptr, [](FT_Face face) { FT_Done_Face(face); }};
    Owned<hb_font_t> shaper_{nullptr, hb_font_destroy};
};

FontFaces& FontFaces::shared() {
    static FontFaces faces;
    return faces;
}

FontFaces::FontFaces() {
    FT_Library library = nullptr;
    FT_Init_FreeType(&library);
    library_.reset(library, FT_Done_FreeType);
}

FontFaces::~FontFaces() = default;

FontFaces::Face* FontFaces::face(const UIFont& font) {
    const auto found = std::ranges::find(faces_, font, &Tried::font);
    if (found != faces_.end()) {
        faces_.splice(faces_.begin(), faces_, found);
        return faces_.front().face.get();
    }
    auto opened = std::make_unique<Face>(library_.get(), font);
    if (*opened)
        ++opened_;
    else
        opened.reset();
    faces_.push_front({font, std::move(opened)});
    if (faces_.size() > kOpenFaces) faces_.pop_back();
    return faces_.front().face.get();
}

std::optional<TextOutline> FontFaces::outline(const UIFont& font, const QString& text) {
    Face* const opened = face(font);
    return opened ? opened->outline(text) : std::nullopt;
}

} // namespace fonts
