#include "tools/lumoractl/ElfFile.h"

#include "platform/foundation/FileContents.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <link.h>
#include <optional>
#include <string_view>

namespace lumora {
namespace {

using platform::Data;
using Header = ElfW(Ehdr);
using Section = ElfW(Shdr);
using Symbol = ElfW(Sym);
using Entry = ElfW(Dyn);

/// What linkers export of every object; the last one comes with code that is counted.
constexpr std::array<std::string_view, 5> kOfLinkers{"_init", "_fini", "_edata", "_end", "mangle_path"};
/// Of the standard library, in mangled names: std, its abbreviations, and what its headers have beside it.
constexpr std::array<std::string_view, 9> kOfStandard{"St", "Sa", "Sb",         "Sd",          "Si",
                                                      "So", "Ss", "9__gnu_cxx", "10__cxxabiv1"};
/// Of the kit.
constexpr std::array<std::string_view, 2> kOfKit{"6lumora", "8platform"};

constexpr std::size_t kLongestText = 4096;

/// A file whose every number may be wrong.
class Sections {
  public:
    explicit Sections(const Data& file) : file_(file) {
        const auto header = at<Header>(0);
        if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 || header->e_shentsize != sizeof(Section) ||
            header->e_ident[EI_CLASS] != (sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32))
            return;
        for (std::uint64_t i = 0; i < header->e_shnum; ++i)
            if (const auto section = at<Section>(header->e_shoff + i * sizeof(Section))) all_.push_back(*section);
    }

    /// The first of a kind; null for none.
    [[nodiscard]] const Section* find(std::uint32_t kind) const {
        const auto found = std::ranges::find(all_, kind, &Section::sh_type);
        return found == all_.end() ? nullptr : &*found;
    }
    /// The entries of a section, as far as the file has them.
    template<class Record>
    [[nodiscard]] std::vector<Record> entriesOf(const Section* section) const {
        std::vector<Record> entries;
        for (std::uint64_t i = 0; section && i < section->sh_size / sizeof(Record); ++i) {
            const auto entry = at<Record>(section->sh_offset + i * sizeof(Record));
            if (!entry) break;
            entries.push_back(*entry);
        }
        return entries;
    }
    /// A text of the table that belongs to a section.
    [[nodiscard]] std::string textOf(const Section& section, std::uint64_t place) const {
        if (section.sh_link >= all_.size()) return {};
        const Section& table = all_[section.sh_link];
        if (place >= table.sh_size || table.sh_offset > file_.size() || place >= file_.size() - table.sh_offset)
            return {};
        const auto begin = static_cast<std::size_t>(table.sh_offset + place);
        const auto first = file_.begin() + std::ptrdiff_t(begin);
        return {first, std::find(first, first + std::ptrdiff_t(std::min(kLongestText, file_.size() - begin)), 0)};
    }

  private:
    template<class Record>
    [[nodiscard]] std::optional<Record> at(std::uint64_t place) const {
        if (place > file_.size() || file_.size() - place < sizeof(Record)) return {};
        Record read{};
        std::memcpy(&read, file_.data() + place, sizeof read);
        return read;
    }

    const Data& file_;
    std::vector<Section> all_;
};

/// Whose it is that a mangled name is of, such as "St6vectorI…" for a vtable or a static variable of std::vector.
std::string_view ownerIn(std::string_view mangled) {
    constexpr std::array<std::string_view, 8> before{"_Z", "GV", "GR", "TV", "TT", "TI", "TS", "Z"};
    for (bool more = true; more;) {
        const auto found = std::ranges::find_if(before, [&](auto prefix) { return mangled.starts_with(prefix); });
        more = found != before.end();
        if (more) mangled.remove_prefix(found->size());
    }
    if (mangled.starts_with('N'))
        mangled.remove_prefix(std::min(mangled.find_first_not_of("rVKRO", 1), mangled.size()));
    return mangled;
}

bool isExported(const Symbol& symbol, std::string_view name) {
    const unsigned binding = symbol.st_info >> 4U;
    const unsigned visibility = symbol.st_other & 3U;
    if (symbol.st_shndx == SHN_UNDEF || binding == STB_LOCAL) return false;
    if (visibility != STV_DEFAULT && visibility != STV_PROTECTED) return false;
    if (name.empty() || name.starts_with("__") || std::ranges::find(kOfLinkers, name) != kOfLinkers.end()) return false;
    if (!name.starts_with("_Z")) return true;
    const std::string_view owner = ownerIn(name);
    const auto begins = [owner](std::string_view beginning) { return owner.starts_with(beginning); };
    // Of what is inline each object may have a copy.
    return std::ranges::none_of(kOfStandard, begins) && (binding != STB_WEAK || std::ranges::none_of(kOfKit, begins));
}

std::vector<std::string> foldersOf(const std::string& path) {
    std::vector<std::string> folders;
    for (std::size_t begin = 0; begin < path.size();) {
        const std::size_t end = std::min(path.find(':', begin), path.size());
        if (end > begin) folders.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return folders;
}

} // namespace

platform::Result<ElfFile> readElfFile(const std::filesystem::path& path) {
    const auto fail = [&path](const char* why) {
        return platform::Result<ElfFile>::failure(path.string() + " cannot be read: " + why);
    };
    const auto file = platform::dataWithContentsOfFile(path);
    if (!file) return fail("it is missing, no file, or too large");
    const Sections sections(*file);
    const Section* symbols = sections.find(SHT_DYNSYM);
    if (!symbols) return fail("it has no table of sections, or is no shared object of this machine's kind");
    ElfFile found;
    for (const auto& symbol : sections.entriesOf<Symbol>(symbols))
        if (std::string name = sections.textOf(*symbols, symbol.st_name); isExported(symbol, name))
            found.exported.push_back(std::move(name));
    const Section* dynamic = sections.find(SHT_DYNAMIC);
    for (const auto& entry : sections.entriesOf<Entry>(dynamic)) {
        if (entry.d_tag == DT_NULL) break;
        if (entry.d_tag != DT_RUNPATH && entry.d_tag != DT_RPATH) continue;
        for (std::string& folder : foldersOf(sections.textOf(*dynamic, entry.d_un.d_val)))
            found.searched.push_back(std::move(folder));
    }
    return found;
}

} // namespace lumora
