#include "programs/CommandLine.h"

namespace programs {

std::optional<int> parse(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        return app.exit(end) == 0 ? 0 : kWrongUse;
    }
    return std::nullopt;
}

int misuse(const CLI::App& app, const std::string& why) {
    app.exit(CLI::ValidationError(why));
    return kWrongUse;
}

void addVersion(CLI::App& app, const std::string& name) {
    app.name(name);
    app.set_version_flag("--version", name + " " LUMORA_VERSION);
}

void addRenderer(CLI::App& app, std::string& renderer) {
    app.add_option("--renderer", renderer,
                   "What draws: the processor or a GPU; auto is software unless QT_QUICK_BACKEND says otherwise")
        ->type_name("auto|software|gpu")
        ->check(CLI::IsMember({"auto", "software", "gpu"}));
}

} // namespace programs
