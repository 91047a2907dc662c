// A plug-in that draws as the name of its bundle says: "KIND-NUMBER.bundle".
#include <lumora/AppView.h>

#include "tests/lists/modules/TestPlugin.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>
#include <tuple>
#include <unistd.h>
#include <vector>

namespace {

std::string kind() {
    const std::string name = ownName();
    return name.substr(0, name.rfind('-'));
}

const char* identifier() {
    static const std::string text = "test." + ownName();
    return text.c_str();
}

const char* name() {
    return "Test";
}

LumoraAppView& view();

LumoraExtent write(const LumoraCanvas* canvas, const char* words, double x, double width) {
    const LumoraText text{words, x, 10, width, 14, 400, LUMORA_ALIGN_LEFT, 2};
    return canvas->text(canvas, &text);
}

void drawEach(const LumoraCanvas* canvas, const LumoraDrawing* drawing) {
    canvas->fillColor(canvas, lumora_rgb(0xFF0000, 1));
    canvas->rectangle(canvas, 0, 0, drawing->width, drawing->height, 0);
    canvas->fillGradient(canvas, 0, 0, lumora_role(LUMORA_ROLE_ACCENT, 1), 10, 10, lumora_rgb(0x00FF00, 0.5));
    canvas->line(canvas, 0, 0, 10, 10, 2);
    canvas->arc(canvas, 20, 20, 10, 90, 180, 3);
    const std::array<LumoraPathPart, 3> parts{
        {{'M', 1, 2, 0, 0, 0, 0}, {'C', 7, 8, 3, 4, 5, 6}, {'Z', 0, 0, 0, 0, 0, 0}}};
    canvas->path(canvas, parts.data(), parts.size(), 0);
    canvas->picture(canvas, "icon", 1, 2, 29);
    canvas->clip(canvas, 0, 0, 50, 50, 5);
    canvas->caption(canvas, drawing->text(drawing, (identifier() + std::string(".word")).c_str(), "none"));
    write(canvas, "one two", 0, 0);
}

void misbehave(const LumoraCanvas* canvas, const std::string& how) {
    static int drawings = 0;
    ++drawings;
    volatile bool forever = true;
    if (how == "crashing" || (how == "crashing-later" && drawings > 1)) std::abort();
    if (how == "exiting") ::_exit(0);
    if (how == "throwing") throw std::runtime_error("no");
    while (how == "looping" && forever) {
    }
    while (how == "sleeping" && forever)
        ::pause();
    if (how == "scribbling")
        for (int file = 0; file < 256; ++file)
            std::ignore = ::write(file, "{}{\n", 4);
    if (how == "garbling") { // whatever leads to the one who asked
        const std::string garbage(4000, 'x');
        for (int file = 256; file < 1024; ++file)
            std::ignore = ::write(file, garbage.data(), garbage.size());
    }
    if (how == "flooding")
        for (int i = 0; i < 100'000; ++i)
            std::ignore = ::write(STDOUT_FILENO, "hello hello hello hello\n", 24);
    if (how == "hungry") {
        std::vector<char> much(std::size_t{32} << 20, 'x');
        canvas->line(canvas, 0, 0, much[5], 1, 1);
    }
    if (how == "leaking") { // a little at a time
        static std::vector<std::vector<char>> kept;
        kept.emplace_back(std::size_t{4} << 20, 'x');
        canvas->caption(canvas, std::to_string(kept.size()).c_str());
    }
    if (how == "large-enough") { // all but too large
        std::vector<LumoraPathPart> path;
        for (int i = 0; i < 4096; ++i)
            path.push_back({i > 0 ? 'L' : 'M', i / 8.0, i / 4.0, 0, 0, 0, 0});
        for (int i = 0; i < 3; ++i)
            canvas->path(canvas, path.data(), path.size(), 1);
    }
    if (how == "turning") view().draw = nullptr;
    for (int i = 0; how == "many" && i < 5000; ++i)
        canvas->line(canvas, 0, i, 10, i, 1);
    const std::string text(4000, 'w');
    for (int i = 0; how == "large" && i < 400; ++i)
        canvas->caption(canvas, text.c_str());
    if (how == "odd") {
        const double none = std::numeric_limits<double>::quiet_NaN();
        canvas->rectangle(canvas, none, 0, 1, 1, 0);
        canvas->rectangle(canvas, -1e300, 0, -5, 1e300, 1);
        canvas->arc(canvas, 0, 0, 5, 1e9, 1e9, 0);
        canvas->picture(canvas, "../../secret", 0, 0, 10);
        canvas->path(canvas, nullptr, 5, 1);
        canvas->caption(canvas, nullptr);
        canvas->caption(canvas, "caf\xE9");
        std::ignore = canvas->text(canvas, nullptr);
    }
}

double draw(const LumoraCanvas* canvas, const LumoraDrawing* drawing) {
    std::string how = kind();
    // A user who can have it crash or hang.
    if (how == "fragile") {
        how = drawing->text(drawing, (identifier() + std::string(".does")).c_str(), "each");
        if (how == "each") drawEach(canvas, drawing);
    }
    if (kind() == "each") drawEach(canvas, drawing);
    misbehave(canvas, how);
    if (how != "each" && how != "odd") canvas->caption(canvas, how.c_str());
    return how == "ticking" ? 0.001 : how == "odd" ? std::numeric_limits<double>::quiet_NaN() : 0;
}

LumoraAppView& view() {
    static LumoraAppView view{LUMORA_APP_VIEW_VERSION, identifier, name, name, nullptr, LUMORA_APP_VIEW_SECURE, draw};
    return view;
}

const LumoraAppView* sharedInstance() {
    if (kind() == "older") { // a table that ends where version 2 begins
        static auto* const older = static_cast<LumoraAppView*>(std::malloc(offsetof(LumoraAppView, flags)));
        older->version = 1;
        older->identifier = identifier;
        older->name = name;
        older->appID = name;
        older->settingsController = nullptr;
        return older;
    }
    if (kind() == "idle") view().draw = nullptr;
    return &view();
}

} // namespace

LUMORA_PRINCIPAL_CLASS(TestPlugin, sharedInstance)
