// The Music application's App View, in C++ and without a settings page: what is played, and how far it is.
#include <lumora/AppView.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace {

constexpr int kPlayed = 92; // of a song, in seconds
constexpr int kLength = 243;

struct Box {
    double x;
    double y;
    double width;
    double height;
};

/// A wave from side to side, filled down to the foot of the picture.
void drawWave(const LumoraCanvas* on, const Box& box, double level, double swing, LumoraColor color) {
    const double y = box.y + level * box.height;
    const double rise = swing * box.height;
    const double third = box.width / 3;
    const double right = box.x + box.width;
    const double foot = box.y + box.height;
    const std::array<LumoraPathPart, 6> parts{{
        {'M', box.x, y, 0, 0, 0, 0},
        {'C', box.x + third, y, box.x + third / 3, y - rise, box.x + 2 * third / 3, y + rise},
        {'C', right, y - rise / 2, box.x + 1.6 * third, y - rise, box.x + 2.4 * third, y + rise},
        {'L', right, foot, 0, 0, 0, 0},
        {'L', box.x, foot, 0, 0, 0, 0},
        {'Z', 0, 0, 0, 0, 0, 0},
    }};
    on->fillColor(on, color);
    on->path(on, parts.data(), parts.size(), 0);
}

/// The record's picture: an evening over hills.
void drawCover(const LumoraCanvas* on, const Box& box) {
    on->clip(on, box.x, box.y, box.width, box.height, box.width * 0.1);
    on->fillGradient(on, box.x, box.y, lumora_rgb(0xFFA07A, 1), box.x + box.width, box.y + box.height * 0.8,
                     lumora_rgb(0xB03A8C, 1));
    on->rectangle(on, box.x, box.y, box.width, box.height, 0);
    on->fillColor(on, lumora_rgb(0xFBE3C0, 1));
    on->arc(on, box.x + box.width * 0.62, box.y + box.height * 0.42, box.width * 0.19, 0, 360, 0);
    drawWave(on, box, 0.58, 0.07, lumora_rgb(0x8B3FA0, 1));
    drawWave(on, box, 0.72, 0.05, lumora_rgb(0x5E2D86, 1));
    drawWave(on, box, 0.86, 0.06, lumora_rgb(0x3A1E63, 1));
    on->clip(on, 0, 0, 0, 0, 0);
}

LumoraExtent write(const LumoraCanvas* on, const char* words, double x, double y, double width, double size,
                   std::uint32_t weight, std::uint32_t align = LUMORA_ALIGN_LEFT, std::uint32_t lines = 1) {
    const LumoraText text{words, x, y, width, size, weight, align, lines};
    return on->text(on, &text);
}

/// Two triangles side by side; a negative width turns them to the left.
void drawSkip(const LumoraCanvas* on, double x, double y, double width, double height) {
    for (const double at : {x - width, x}) {
        const double tip = at + width;
        const std::array<LumoraPathPart, 4> parts{{
            {'M', at, y - height / 2, 0, 0, 0, 0},
            {'L', tip, y, 0, 0, 0, 0},
            {'L', at, y + height / 2, 0, 0, 0, 0},
            {'Z', 0, 0, 0, 0, 0, 0},
        }};
        on->path(on, parts.data(), parts.size(), 0);
    }
}

void drawButtons(const LumoraCanvas* on, double middle, double y, double height) {
    on->fillColor(on, lumora_role(LUMORA_ROLE_TEXT, 1));
    drawSkip(on, middle - 78, y, -0.6 * height, 0.9 * height);
    drawSkip(on, middle + 78, y, 0.6 * height, 0.9 * height);
    for (const double side : {-0.4, 0.12})
        on->rectangle(on, middle + side * height, y - height / 2, 0.28 * height, height, 1.5);
}

std::string minutes(int seconds) {
    const std::string rest = std::to_string(seconds % 60);
    return std::to_string(seconds / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

double draw(const LumoraCanvas* on, const LumoraDrawing* drawing) {
    const double scale = drawing->textScale;
    const double width = drawing->width;
    on->caption(on, "Speaker");

    const double small = 12 * scale;
    const double buttons = 24;
    const double below = 5 + 8 + 1.22 * small + 14 + buttons + 8; // the bar and what is under it
    const double edge = std::clamp(drawing->height - below - 14, 40.0, 124.0);
    drawCover(on, {2, 2, edge, edge});

    // Title, artist and record, as many as there is room for beside the cover.
    const double left = edge + 20;
    const double room = width - left;
    struct Line {
        const char* words;
        double size;
        std::uint32_t weight;
        std::uint32_t role;
    };
    const std::array<Line, 3> lines{{{"Northern Rooms", 18, 600, LUMORA_ROLE_TEXT},
                                     {"Ada & the Long Light", 14.5, 400, LUMORA_ROLE_TEXT},
                                     {"Ridge Songs", 14.5, 400, LUMORA_ROLE_SECONDARY}}};
    double tall = 0;
    std::size_t fitting = 0;
    while (fitting < lines.size() && tall + 1.3 * lines[fitting].size * scale <= edge + 4)
        tall += 1.3 * lines[fitting++].size * scale;
    double y = 2 + (edge - tall) / 2;
    for (std::size_t i = 0; i < std::max<std::size_t>(fitting, 1); ++i) {
        on->fillColor(on, lumora_role(lines[i].role, 1));
        write(on, lines[i].words, left, y, room, lines[i].size * scale, lines[i].weight);
        y += 1.3 * lines[i].size * scale;
    }

    const double bar = drawing->height - below;
    const double played = width * kPlayed / kLength;
    on->fillColor(on, lumora_role(LUMORA_ROLE_SEPARATOR, 1));
    on->rectangle(on, 0, bar, width, 5, 2.5);
    on->fillColor(on, lumora_role(LUMORA_ROLE_TEXT, 1));
    on->rectangle(on, 0, bar, played, 5, 2.5);
    write(on, minutes(kPlayed).c_str(), 0, bar + 9, width / 2, small, 500);
    write(on, ("−" + minutes(kLength - kPlayed)).c_str(), width / 2, bar + 9, width / 2, small, 500,
          LUMORA_ALIGN_RIGHT);
    drawButtons(on, width / 2, drawing->height - 8 - buttons / 2, buttons);
    return 0;
}

const LumoraAppView musicView{
    .version = LUMORA_APP_VIEW_VERSION,
    .identifier = [] { return "org.lumora.plugins.music"; },
    .name = [] { return "Music"; },
    .appID = [] { return "org.lumora.samples.Music"; },
    .settingsController = nullptr,
    .flags = 0,
    .draw = draw,
};

const LumoraAppView* sharedInstance() {
    return &musicView;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(MusicView, sharedInstance)
