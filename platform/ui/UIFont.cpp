#include "platform/ui/UIFont.h"

#include "platform/foundation/Unicode.h"
#include "platform/ui/UIFontStream.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <mutex>
#include <set>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t kLongestMadeUp = 255; // of a PostScript name
constexpr int kMostFilesRead = 200;         // at one look, in some ten milliseconds

struct InstalledFont {
    std::string family;
    std::string name;
    std::string file;
    int index = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): the check sees a null in what the compiler writes here
    friend auto operator<=>(const InstalledFont&, const InstalledFont&) = default;
};

/// What was installed at one look: of several fonts with one name, the first. Never changes.
struct Installed {
    explicit Installed(std::vector<InstalledFont> found) : fonts(std::move(found)) {
        std::ranges::sort(fonts);
        std::unordered_set<std::string> names;
        std::erase_if(fonts, [&](const InstalledFont& font) { return !names.insert(font.name).second; });
        for (const InstalledFont& font : fonts)
            byName.emplace(font.name, &font);
    }
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;

    std::vector<InstalledFont> fonts; ///< by family, then by name
    std::unordered_map<std::string, const InstalledFont*> byName;
};

/// Empty without a text in UTF-8.
std::string text(const FcPattern* pattern, const char* key) {
    FcChar8* found = nullptr;
    if (FcPatternGetString(pattern, key, 0, &found) != FcResultMatch) return {};
    std::string value = reinterpret_cast<const char*>(found);
    return isUtf8(value) ? value : std::string();
}

int number(const FcPattern* pattern, const char* key) {
    int found = 0;
    FcPatternGetInteger(pattern, key, 0, &found);
    return found;
}

bool flag(const FcPattern* pattern, const char* key) {
    FcBool found = FcFalse;
    FcPatternGetBool(pattern, key, 0, &found);
    return found == FcTrue;
}

/// A text with a hyphen for every sign that fontconfig might keep out of a PostScript name, and for a few more.
std::string hyphenated(std::string name) {
    for (char& sign : name)
        if (std::string_view(" !\"#$%&'()*+,./:;<=>?@[\\]^`{|}~").find(sign) != std::string_view::npos) sign = '-';
    return name;
}

/// Fontconfig silently makes a name for a font without a PostScript name, from the family's name in some language.
bool looksMadeUp(const FcPattern* pattern, const std::string& name) {
    FcChar8* family = nullptr;
    for (int i = 0; FcPatternGetString(pattern, FC_FAMILY, i, &family) == FcResultMatch; ++i)
        if (hyphenated(reinterpret_cast<const char*>(family)).substr(0, kLongestMadeUp) == hyphenated(name))
            return true;
    return false;
}

/// Finds the names of fonts; one for each look at what is installed.
class Namer {
  public:
    Namer() { FT_Init_FreeType(&library_); }
    Namer(const Namer&) = delete;
    Namer& operator=(const Namer&) = delete;
    ~Namer() { FT_Done_FreeType(library_); }

    /// The PostScript name, or the full name where a font has none.
    std::string nameOf(const FcPattern* pattern, const InstalledFont& font) {
        std::string name = text(pattern, FC_POSTSCRIPT_NAME);
        std::string fullName = text(pattern, FC_FULLNAME);
        if (fullName.empty()) return name;
        if (name.empty() || std::ranges::any_of(name, [](unsigned char sign) { return sign > 126; }))
            return fullName; // a real name is ASCII
        if (name == fullName || !looksMadeUp(pattern, name)) return name;
        if (++filesRead_ > kMostFilesRead) return name == font.family ? name : fullName; // what is likely
        return isInFile(name, font) ? name : fullName;
    }

  private:
    [[nodiscard]] bool isInFile(const std::string& name, const InstalledFont& font) const {
        UIFontStream stream(font.file);
        FT_Face face = stream.open(library_, font.index);
        if (!face) return false;
        const char* found = FT_Get_Postscript_Name(face);
        const bool isIt = found && name == found;
        FT_Done_Face(face);
        return isIt;
    }

    FT_Library library_ = nullptr;
    int filesRead_ = 0;
};

std::vector<InstalledFont> fontsIn(const FcFontSet& set) {
    const std::vector<const FcPattern*> patterns(set.fonts, set.fonts + set.nfont);
    // Of a variable font there is an entry for all that it can be, beside one for each of its instances.
    const auto standsForAll = [](const FcPattern* pattern) { return flag(pattern, FC_VARIABLE); };
    const auto faceOf = [](const FcPattern* pattern) {
        return std::pair(text(pattern, FC_FILE), number(pattern, FC_INDEX) & 0xFFFF);
    };
    std::set<std::pair<std::string, int>> withInstances;
    for (const FcPattern* pattern : patterns)
        if (!standsForAll(pattern)) withInstances.insert(faceOf(pattern));

    Namer namer;
    std::vector<InstalledFont> fonts;
    for (const FcPattern* pattern : patterns) {
        if (!flag(pattern, FC_SCALABLE)) continue;
        if (standsForAll(pattern) && withInstances.contains(faceOf(pattern))) continue;
        InstalledFont font;
        font.family = text(pattern, FC_FAMILY);
        font.file = text(pattern, FC_FILE);
        // No file has the instance that stands for all.
        font.index = standsForAll(pattern) ? faceOf(pattern).second : number(pattern, FC_INDEX);
        font.name = namer.nameOf(pattern, font);
        if (!font.family.empty() && !font.name.empty() && !font.file.empty()) fonts.push_back(std::move(font));
    }
    return fonts;
}

/// Reads fontconfig's caches. In a configuration of its own: the shared one is the toolkit's, on another thread.
std::shared_ptr<const Installed> look() {
    const std::unique_ptr<FcConfig, void (*)(FcConfig*)> config(FcInitLoadConfigAndFonts(), FcConfigDestroy);
    // The set itself, since fontconfig's lists leave out files whose names differ in case only.
    const FcFontSet* set = config ? FcConfigGetFonts(config.get(), FcSetSystem) : nullptr;
    return std::make_shared<const Installed>(set ? fontsIn(*set) : std::vector<InstalledFont>());
}

std::mutex lastLook;
std::shared_ptr<const Installed> installed; ///< at the last look; guarded by lastLook

/// Fontconfig tells changes apart by the second only, and a font may have been installed in the very second of the last
/// look. Looking takes a few milliseconds, and a list of fonts begins with the families.
std::shared_ptr<const Installed> lookAnew() {
    auto found = look();
    const std::lock_guard hold(lastLook);
    return installed = std::move(found);
}

std::shared_ptr<const Installed> atLastLook() {
    {
        const std::lock_guard hold(lastLook);
        if (installed) return installed;
    }
    return lookAnew();
}

} // namespace

std::vector<std::string> UIFont::familyNames() {
    const auto all = lookAnew();
    std::vector<std::string> names;
    for (const InstalledFont& font : all->fonts)
        if (names.empty() || names.back() != font.family) names.push_back(font.family);
    return names;
}

std::vector<std::string> UIFont::fontNamesForFamilyName(const std::string& family) {
    const auto all = atLastLook();
    std::vector<std::string> names;
    auto font = std::ranges::lower_bound(all->fonts, family, {}, &InstalledFont::family);
    for (; font != all->fonts.end() && font->family == family; ++font)
        names.push_back(font->name);
    return names;
}

UIFontRef UIFont::fontWithName(const std::string& name, double size) {
    const auto all = atLastLook();
    const auto found = all->byName.find(name);
    if (found == all->byName.end()) return nullptr;
    return std::make_shared<const UIFont>(name, size, found->second->file, found->second->index);
}

UIFontRef UIFont::systemFontOfSize(double size) {
    return std::make_shared<const UIFont>(std::string(), size, std::filesystem::path(), 0);
}

} // namespace platform
