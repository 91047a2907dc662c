#include "settings/app/Options.h"

#include "platform/foundation/Unicode.h"
#include "programs/CommandLine.h"
#include "programs/Size.h"

namespace settings {
namespace {

/// Why the text cannot name a class; empty when it can.
std::string isName(const std::string& text) {
    return platform::isUtf8(text) ? "" : "a name is UTF-8";
}

} // namespace

Options readOptions(int argc, char** argv, std::optional<int>& exitCode) {
    Options options;
    std::string size;
    bool dark = false;
    bool light = false;
    bool all = false;
    std::string behind;
    std::string contrast;
    CLI::App app{"Shows the settings of Lumora and changes them.\n\n"
                 "Without options, opens a window with the root page. The settings themselves are the tweak's: a page\n"
                 "opens when lumora-tweak, or another program that speaks its ports, has answered."};
    programs::addVersion(app, "lumora-settings");
    programs::addRoot(app, options.root);
    app.add_option("--bundle", options.bundle, "The settings bundle, in place of the device's own")->type_name("PATH");
    app.add_option("--page", options.page, "Open at this page class, upon those that lead there")
        ->type_name("CLASS")
        ->check(isName);
    auto* grab = app.add_option("--grab", options.grab, "Save a picture of the page, and end")->type_name("FILE.png");
    auto* tour =
        app.add_option("--tour", options.tour, "Save pictures of every page in a folder, and end")->type_name("DIR");
    auto* rows = app.add_option("--rows", options.rows, "Print a page as JSON, and end; secure values are dots")
                     ->type_name("CLASS")
                     ->check(isName);
    auto* index = app.add_flag("--index", all, "Print what can be found on all pages, a line for each, and end");
    app.add_option("--index-behind", behind)->group("")->needs(index); // for another process that goes on with it
    auto* search = app.add_option("--search", options.search, "Open the search, and look for these words")
                       ->type_name("WORDS")
                       ->check(isName)
                       ->excludes(tour, rows);
    auto* history = app.add_flag("--history", options.history, "Show what has been changed, if the tweak keeps that");
    history->excludes(tour, rows, search);
    app.add_option("--profile", options.profile, "Show what a profile would change, and offer to take it")
        ->type_name("FILE")
        ->check(CLI::ExistingFile)
        ->excludes(tour, rows, search, history);
    app.add_flag("--lockscreen", options.lockScreen,
                 "In the picture, show the lock screen beside the page from 1200 points on")
        ->needs(grab);
    grab->excludes(tour, rows);
    tour->excludes(rows);
    index->excludes(grab, tour, rows);
    app.add_option("--timeout", options.timeout,
                   "How long --rows, and each page of --grab and --tour, may take (default: 30)")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.001, 86400.0));
    app.add_flag("--verbose", options.verbose,
                 "Write what pages log to standard error too; the first page logs all settings, passcodes too");
    auto* lightFlag = app.add_flag("--light", light, "Light colours, whatever the desktop's setting");
    app.add_flag("--dark", dark, "Dark colours, whatever the desktop's setting")->excludes(lightFlag);
    app.add_option("--contrast", contrast, "How much texts and signs stand out, whatever the desktop's setting")
        ->type_name("more|normal")
        ->check(CLI::IsMember({"more", "normal"}));
    app.add_option("--text-size", options.textSize, "How large texts are, whatever the desktop's setting (usual: 100)")
        ->type_name("PERCENT")
        ->check(CLI::Range(kSmallestTexts, kLargestTexts));
    app.add_option("--columns", options.columns,
                   "How many columns a wide window has (default: as it was closed last, 2 at first; 1 in pictures)")
        ->type_name("1|2")
        ->check(CLI::IsMember({1, 2}));
    app.add_option("--size", size, "The window's size (default: as it was closed last, at first as the screen allows)")
        ->type_name("WxH")
        ->check(programs::isSize);
    programs::addRenderer(app, options.renderer);
    app.footer("Exit codes: 0 done, 1 failed, 2 wrong use.");
    exitCode = programs::parse(app, argc, argv);
    if (exitCode) return options;
    if (all) options.indexBehind = behind;
    if (dark || light) options.dark = dark;
    if (!contrast.empty()) options.moreContrast = contrast == "more";
    if (!size.empty()) options.size = *programs::sizeFrom(size);
    return options;
}

} // namespace settings
