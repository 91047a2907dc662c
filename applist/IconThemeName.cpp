#include "applist/IconThemeName.h"

#include "applist/GLibPointer.h"

#include <filesystem>
#include <vector>

namespace applist {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSchema = "org.gnome.desktop.interface";
constexpr const char* kKey = "icon-theme";

std::string fromSettings() {
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    if (!source) return {};
    const GLibPointer<GSettingsSchema> schema(g_settings_schema_source_lookup(source, kSchema, TRUE));
    // Asking for settings without a schema, or for a key that it lacks, would end the program.
    if (!schema || !g_settings_schema_has_key(schema.get(), kKey)) return {};
    const GObjectPointer<GSettings> settings(g_settings_new_full(schema.get(), nullptr, nullptr));
    const GLibPointer<GVariant> value(g_settings_get_value(settings.get(), kKey));
    if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING)) return {};
    return g_variant_get_string(value.get(), nullptr);
}

std::string fromFiles() {
    std::vector<fs::path> folders{g_get_user_config_dir()};
    for (const char* const* folder = g_get_system_config_dirs(); *folder; ++folder)
        folders.emplace_back(*folder);
    for (const fs::path& folder : folders) {
        for (const char* toolkit : {"gtk-4.0", "gtk-3.0"}) {
            const GLibPointer<GKeyFile> file(g_key_file_new());
            const fs::path path = folder / toolkit / "settings.ini";
            if (!g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr)) continue;
            const GLibPointer<char> name(g_key_file_get_string(file.get(), "Settings", "gtk-icon-theme-name", nullptr));
            if (name && *name) return name.get();
        }
    }
    return {};
}

} // namespace

std::string iconThemeName() {
    if (std::string name = fromSettings(); !name.empty()) return name;
    if (std::string name = fromFiles(); !name.empty()) return name;
    return "hicolor";
}

} // namespace applist
