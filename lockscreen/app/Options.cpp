#include "lockscreen/app/Options.h"

#include "programs/CommandLine.h"
#include "programs/Size.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace lumora {
namespace {

constexpr std::array<std::string_view, 3> kWallpapers{"dusk", "day", "night"};
constexpr std::size_t kMostDigits = 12; // as many dots as the passcode view has room for

/// None of these repeats the passcode: what is wrong with it may be one digit.
std::string isPasscode(const std::string& text) {
    if (text.find_first_not_of("0123456789") != std::string::npos) return "a passcode has digits alone";
    return text.size() <= kMostDigits ? "" : "a passcode has 12 digits at most";
}

std::string isTime(const std::string& text) {
    return timeFrom(text) ? "" : "is no time such as 18:36 or 2026-11-20T18:36: " + text;
}

/// The range lets it pass that is neither above nor below.
std::string isNumber(const std::string& text) {
    return text.find_first_of("nN") == std::string::npos ? "" : "is no number: " + text;
}

std::string isPicture(const std::string& name) {
    std::error_code unknown;
    return isWallpaper(name) || std::filesystem::is_regular_file(name, unknown)
               ? ""
               : "is neither dusk, day or night nor a file: " + name;
}

constexpr const char* kAbout = R"(Shows a lock screen as the settings of Lumora make it, and behaves like one.

Without options, opens a window with a sample phone that follows the settings of lumora-tweak, or of another
program that speaks its ports, while they change.)";

constexpr const char* kGestures = R"(A file of gestures has one a line:
  tap icons[2]            tap keys[4]             tap passcode.cancel     tap
  hold icons[0]           swipe left|right|down   swipe notices.items[0] 0.4
  slide                   pull camera|topGrabber|bottomGrabber            home
  key Left|Right|Up|Down|Enter|Shift+Enter|Menu|Escape|BackSpace|Home|S|0-9
  wait 3.5                (seconds)
Lines that are empty or begin with "#" are passed over.

A file of scenes has {"settings": {…}, "scenes": [{"name": "NAME", …}]}. Each scene is saved as NAME.png, and may have
"settings" of its own beside those of all, "surface", "gestures" (a list), "wallpaper", "landscape" and "ratio" (1): it
is saved if QT_SCALE_FACTOR is that; and "textSize" (100).

Exit codes: 0 done, 1 failed, 2 wrong use.)";

} // namespace

bool isWallpaper(const std::string& name) {
    return std::ranges::find(kWallpapers, name) != kWallpapers.end();
}

Options readOptions(int argc, char** argv, std::optional<int>& exitCode) {
    Options options;
    bool landscape = false;
    std::string size;
    std::string surface;
    std::string time;
    int battery = 82;
    CLI::App app{kAbout};
    programs::addVersion(app, "lumora-lockscreen");
    programs::addRoot(app, options.root);
    app.add_flag("--landscape", landscape, "Turn the phone");
    app.add_option("--size", size, "The size of its screen (default: 390x844)")
        ->type_name("WxH")
        ->check(programs::isSize);
    app.add_option("--passcode", options.phone.passcode, "The phone's passcode, \"\" for none (default: 1234)")
        ->type_name("DIGITS")
        ->check(isPasscode);
    app.add_option("--wallpaper", options.wallpaper, "dusk, day, night, or a picture of your own (default: dusk)")
        ->type_name("NAME|FILE")
        ->check(isPicture);
    app.add_option("--surface", surface, "Begin at notices, applications, an App View, the passcode or the home screen")
        ->type_name("N|A|V|P|O")
        ->check(CLI::IsMember({"N", "A", "V", "P", "O"}));
    app.add_option("--time", time, "The time to show, today or on a day (default: the present, which goes on)")
        ->type_name("[DAY]HH:MM")
        ->check(isTime);
    app.add_option("--battery", battery, "How full the battery is (default: 82)")
        ->type_name("PERCENT")
        ->check(CLI::Range(0, 100));
    app.add_option("--text-size", options.textSize,
                   "How large texts in App Views are, whatever the desktop's setting (usual: 100)")
        ->type_name("PERCENT")
        ->check(CLI::Range(kSmallestTextSize, kLargestTextSize));
    auto* play =
        app.add_option("--play", options.play, "Do the gestures of a file, - for standard input")->type_name("FILE");
    app.add_option("--idle", options.idle, "Let so many seconds pass without a touch, after all gestures")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.0, 86400.0))
        ->check(isNumber);
    auto* settings =
        app.add_option("--settings", options.settings,
                       "Draw the settings of a file, as lumoractl list or export prints them, - for standard input")
            ->type_name("FILE.json");
    auto* state = app.add_flag("--state", options.state, "Print what the screen shows as JSON, and end");
    auto* grab = app.add_option("--grab", options.grab, "Save a picture of the screen, and end")->type_name("FILE.png");
    auto* tour =
        app.add_option("--tour", options.tour, "Save pictures of every surface in a folder, and end")->type_name("DIR");
    app.add_option("--scenes", options.scenes, "Have the tour take the scenes of a file instead")
        ->type_name("FILE.json")
        ->needs(tour)
        ->excludes(settings, play);
    state->excludes(grab, tour);
    grab->excludes(tour);
    app.add_flag("--log", options.log, "Print a line for each gesture and what comes of it; digits are dots");
    programs::addRenderer(app, options.renderer);
    app.footer(kGestures);
    exitCode = programs::parse(app, argc, argv);
    if (exitCode) return options;
    if (*play && *settings && *options.play == "-" && *options.settings == "-") {
        exitCode = programs::misuse(app, "--play and --settings cannot both read standard input");
        return options;
    }
    platform::CGSize& screen = options.phone.size;
    if (!size.empty()) screen = *programs::sizeFrom(size);
    if (landscape && screen.width < screen.height) std::swap(screen.width, screen.height);
    options.phone.battery = battery / 100.0;
    if (!time.empty()) options.phone.time = timeFrom(time);
    if (!surface.empty()) options.surface = static_cast<Surface>(surface.front());
    return options;
}

} // namespace lumora
