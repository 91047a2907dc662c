#include "NotesDrawing.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace notes {
namespace {

struct Note {
    const char* title;
    const char* text;
    int edited;  ///< hours ago
    int created; ///< days ago
    bool locked = false;
};

constexpr std::array<Note, 4> kNotes{{
    {"Packing list", "Rain jacket, two torches, the small stove, matches, tea, and the map of the north shore.", 1, 6},
    {"Boathouse", "The key is at the front desk. Bring the oars back before the first frost.", 5, 2},
    {"Door code", "Ask Ines, and do not write it down.", 30, 40, true},
    {"Songs for the ridge", "Northern Rooms; Slow Lanterns; the one with the long ending.", 3, 12},
}};

constexpr const char* kHidden = "Locked";

std::array<Note, kNotes.size()> inOrder(std::string_view order) {
    auto notes = kNotes;
    std::stable_sort(notes.begin(), notes.end(), [order](const Note& a, const Note& b) {
        if (order == "title") return std::string_view(a.title) < std::string_view(b.title);
        return order == "created" ? a.created < b.created : a.edited < b.edited;
    });
    return notes;
}

} // namespace

double drawNotes(const LumoraCanvas* canvas, const LumoraDrawing* drawing) {
    const double scale = drawing->textScale;
    const double size =
        std::clamp(drawing->number(drawing, "org.lumora.plugins.notes.textSize", 15), 9.0, 30.0) * scale;
    const bool hides = drawing->number(drawing, "org.lumora.plugins.notes.hideLocked", 1) != 0;
    const auto notes = inOrder(drawing->text(drawing, "org.lumora.plugins.notes.order", "edited"));
    const auto write = [&](const char* words, double y, double height, std::uint32_t weight, std::uint32_t role,
                           std::uint32_t lines) {
        canvas->fillColor(canvas, lumora_role(role, 1));
        const LumoraText text{words, 2, y, drawing->width - 4, height, weight, LUMORA_ALIGN_LEFT, lines};
        return canvas->text(canvas, &text).height;
    };
    canvas->caption(canvas, "4 notes");

    // At the foot, what a new note will be called.
    const std::string_view upcoming = drawing->text(drawing, "org.lumora.plugins.notes.title", "");
    const double foot = drawing->height - (upcoming.empty() ? 0 : 1.22 * size + 8);

    // The first note has up to four lines, each other one a title and a line, as long as there is room.
    double y = 0;
    bool first = true;
    for (const Note& note : notes) {
        const double title = size + 1;
        const double needed = 1.22 * (title + size * (first ? 2 : 1)) + (first ? 0 : 17);
        if (!first && y + needed > foot) break;
        if (!first) {
            canvas->fillColor(canvas, lumora_role(LUMORA_ROLE_SEPARATOR, 1));
            canvas->line(canvas, 2, y + 8, drawing->width - 2, y + 8, 1);
            y += 17;
        }
        y += write(note.title, y, title, 600, LUMORA_ROLE_TEXT, 1);
        const bool hidden = note.locked && hides;
        y += write(hidden ? kHidden : note.text, y, size, 400, LUMORA_ROLE_SECONDARY, first ? 3 : 1);
        first = false;
    }
    if (!upcoming.empty() && y <= foot)
        write(("New note: " + std::string(upcoming)).c_str(), foot + 8, size, 500, LUMORA_ROLE_ACCENT, 1);
    return 0;
}

} // namespace notes
