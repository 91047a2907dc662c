#pragma once

#include "platform/ui/UIFont.h"

#include <QPainterPath>
#include <QString>

#include <cstddef>
#include <list>
#include <memory>
#include <optional>

struct FT_LibraryRec_; // FreeType's

namespace fonts {

/// A text as it is drawn, in points: its outline, with the beginning of the baseline at (0, 0), and its width.
struct TextOutline {
    QPainterPath path;
    double width = 0;
    bool rightToLeft = false;
};

/// Draws text in fonts that the toolkit's own fonts cannot name: by their files, collections and instances of variable
/// fonts included. A face is opened for the first text in it. The faces used last stay open; one that cannot be opened
/// is remembered among them.
///
///     if (const auto outline = FontFaces::shared().outline(*font, "Inter-Bold")) painter.drawPath(outline->path);
///
/// GUI thread.
class FontFaces {
  public:
    static FontFaces& shared();

    /// Nothing when the file cannot be read as a font, or when the font has no outlines for some of the text.
    [[nodiscard]] std::optional<TextOutline> outline(const platform::UIFont& font, const QString& text);
    /// How many faces have been opened so far.
    [[nodiscard]] int opened() const { return opened_; }

    FontFaces();
    FontFaces(const FontFaces&) = delete;
    FontFaces& operator=(const FontFaces&) = delete;
    ~FontFaces();

  private:
    class Face;
    Face* face(const platform::UIFont& font);

    std::shared_ptr<FT_LibraryRec_> library_;
    struct Tried {
        platform::UIFont font;
        std::unique_ptr<Face> face; ///< null when it could not be opened
    };
    std::list<Tried> faces_; ///< the one used last comes first
    int opened_ = 0;
};

} // namespace fonts
