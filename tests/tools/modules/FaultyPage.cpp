// A plug-in with a page, without fault but for the one that the name of its bundle says: "FAULT.bundle", or
// "FAULT-NUMBER.bundle" for several that call themselves the same. Compiled with EXPORTS_MORE, it exports more than it
// should.
#include <lumora/SettingsController.h>

#include "tests/lists/modules/TestPlugin.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <stdexcept>
#include <tuple>
#include <unistd.h>

#ifdef EXPORTS_MORE
LUMORA_PLUGIN_EXPORT int handy();
int handy() {
    return 1;
}
template<class Number>
__attribute__((visibility("default"))) Number handier() {
    return 2;
}
template int handier<int>();
#endif

namespace {

std::string fault() {
    const std::string name = ownName();
    return name.substr(0, name.find('-'));
}
bool has(const char* one) {
    return fault() == one;
}

std::string key(const std::string& name) {
    return "org.example." + fault() + "." + name;
}

class FaultyPage final : public lumora::SettingsPage {
  public:
    FaultyPage() : SettingsPage(lumora::sessionOf<FaultyPage>()) {}

  protected:
    Rows rows(lumora::PreferenceHelper& make) override {
        static int count = 0;
        ++count;
        if (has("page")) throw std::runtime_error("no page today");
        if (has("null")) return {nullptr};
        if (has("crash")) std::abort();
        if (has("leave")) ::_exit(0);
        if (has("sleep")) std::ignore = ::sleep(60);
        if (has("hang"))
            for (volatile bool spins = true; spins;)
                continue;
        if (has("differing")) return {make.toggle("Switch " + std::to_string(count), key("switch"))};
        if (has("growing")) return Rows(std::size_t(count), make.static_("One more"));
        if (has("keyless")) return {make.toggle("Switch", "")};
        if (has("twice")) return {make.toggle("Switch", key("switch")), make.field("Field", key("switch"))};
        if (has("options")) return {make.link("Size", key("size"), {"Small", "Large"}, {"small"})};
        if (has("empty")) return {make.link("Size", key("size"), {}, {})};
        if (has("slider")) return {make.slider(key("bright"), 1, 0)};
        if (has("endless")) return {make.slider(key("bright"), 0, std::numeric_limits<float>::infinity())};
        if (has("link")) return {make.link("Further", "NoSuchPage")};
        if (has("button")) return {make.button("Press", nullptr)};
        if (has("icon")) return {make.specifier(make.toggle("Switch", key("switch")), "icon")};
        if (has("foreign")) return {make.toggle("Switch", "switch")};
        if (has("settings")) {
            const platform::Value size = session().value(key("size"));
            if (!size.isNil() && !size.text()) std::abort();
            return {make.field("Size", key("size"))};
        }
        return {make.toggle("Switch", key("switch")), make.slider(key("bright"), 0, 1)};
    }
};

LUMORA_SETTINGS_CONTROLLER(FaultyPage, ownPage)

const LumoraSettingsController* settingsController() {
    static const LumoraSettingsController other{"kit 1, gcc 1, libstdc++ abi 0", ownPage()->pageClass};
    return has("tag") ? &other : ownPage();
}

const char* identifier() {
    static const std::string text = has("identifier") ? "clock" : "org.example." + fault();
    return text.c_str();
}

const char* name() {
    static int asked = 0;
    const bool isLate = ++asked > 50; // discovery does not ask so often
    if (has("prints")) std::puts("hello");
    if (has("scribbling") && isLate) std::ignore = ::write(7, "hello", 5);
    return has("unstable") && isLate ? "Another" : "Faulty";
}

const char* appID() {
    return "org.example.Application";
}

void write(const LumoraCanvas* canvas, const std::string& words, double y, std::uint32_t role = LUMORA_ROLE_TEXT) {
    canvas->fillColor(canvas, lumora_role(role, 1));
    const LumoraText text{words.c_str(), 0, y, 0, 16, 400, LUMORA_ALIGN_LEFT, 1};
    canvas->text(canvas, &text);
}

void drawBadly(const LumoraCanvas* canvas, const LumoraDrawing* drawing) {
    volatile bool forever = true;
    if (has("drawThrows")) throw std::runtime_error("no");
    if (has("drawCrashes") && drawing->width > 800) std::abort();
    while (has("drawHangs") && forever)
        continue;
    if (has("drawSleeps")) std::ignore = ::sleep(3);
    if (has("drawSlowly"))
        for (const auto begin = std::clock(); std::clock() - begin < CLOCKS_PER_SEC / 5;)
            continue;
    for (int i = 0; i < 5000 && has("drawMuch"); ++i)
        canvas->line(canvas, 0, 0, 1, 1, 1);
    if (has("drawFaintly")) write(canvas, "Faint", 40, LUMORA_ROLE_SEPARATOR);
    if (has("drawOnBlue") && drawing->dark == 0) {
        canvas->fillColor(canvas, lumora_rgb(0x102040, 1));
        canvas->rectangle(canvas, 0, 30, drawing->width, 40, 8);
        write(canvas, "Ink on blue", 40);
    }
    if (has("drawBeyond")) write(canvas, "Below", drawing->height);
    if (has("drawLeaks")) static_cast<volatile char*>(std::malloc(20))[0] = 'x';
    const double size = drawing->number(drawing, key("bright").c_str(), 0.5);
    if (has("drawUnwary") && !(std::abs(size) <= 1000)) std::abort();
}

/// With each kind of text that can be read.
double draw(const LumoraCanvas* canvas, const LumoraDrawing* drawing) {
    write(canvas, "By role", 0);
    write(canvas, "By role", 20, LUMORA_ROLE_SECONDARY);
    canvas->fillColor(canvas, lumora_rgb(0x102040, 1));
    canvas->rectangle(canvas, 0, 100, 200, 60, 8);
    canvas->fillColor(canvas, lumora_rgb(0xFFE0A0, 1));
    const LumoraText text{"On a ground of its own", 4, 110, 192, 14, 400, LUMORA_ALIGN_CENTER, 1};
    canvas->text(canvas, &text);
    drawBadly(canvas, drawing);
    return 0;
}

const LumoraAppView* sharedInstance() {
    static const LumoraAppView view{LUMORA_APP_VIEW_VERSION,
                                    identifier,
                                    name,
                                    appID,
                                    settingsController,
                                    0,
                                    fault().starts_with("draw") ? draw : nullptr};
    return &view;
}

} // namespace

LUMORA_PRINCIPAL_CLASS(TestPlugin, sharedInstance)
