#include "platform/foundation/ElfFile.h"

#include "platform/foundation/ElfImage.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace platform {
namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kNothing = R_X86_64_NONE, kRelative = R_X86_64_RELATIVE, kChosen = R_X86_64_IRELATIVE;
#elif defined(__aarch64__)
constexpr std::uint32_t kNothing = R_AARCH64_NONE, kRelative = R_AARCH64_RELATIVE, kChosen = R_AARCH64_IRELATIVE;
#endif

/// More per-thread data than any library has. The loader ends the process when a thread cannot have it.
constexpr std::uint64_t kMostThreadData = std::uint64_t{1} << 26;
/// More versions and symbols than any library has; they keep a chain that has no end from being followed for ever.
constexpr std::size_t kMostVersions = 1U << 14;
constexpr std::uint64_t kMostSymbols = std::uint64_t{1} << 24;

/// A table that the loader walks: its address, its bytes, and of how many each entry is. The loader takes it for
/// granted that all of these entries are there when one of them is.
struct Table {
    Elf64_Sxword address, size, widthEntry;
    std::uint64_t width;
};
constexpr Table kTables[] = {{DT_RELA, DT_RELASZ, DT_RELAENT, sizeof(Elf64_Rela)},
                             {DT_JMPREL, DT_PLTRELSZ, DT_NULL, sizeof(Elf64_Rela)},
                             {DT_RELR, DT_RELRSZ, DT_RELRENT, sizeof(Elf64_Relr)},
                             {DT_INIT_ARRAY, DT_INIT_ARRAYSZ, DT_NULL, sizeof(Elf64_Addr)},
                             {DT_FINI_ARRAY, DT_FINI_ARRAYSZ, DT_NULL, sizeof(Elf64_Addr)}};

std::uint32_t hashOf(const char* name) {
    std::uint32_t hash = 5381;
    for (; *name != '\0'; ++name)
        hash = hash * 33 + static_cast<unsigned char>(*name);
    return hash;
}

std::uint32_t oldHashOf(const char* name) {
    std::uint32_t hash = 0;
    for (; *name != '\0'; ++name) {
        hash = (hash << 4) + static_cast<unsigned char>(*name);
        hash = (hash ^ ((hash & 0xF0000000U) >> 24)) & 0x0FFFFFFFU;
    }
    return hash;
}

/// One file under examination. Each check tells what is wrong, empty when nothing is, and stands on those before it.
class Examination {
  public:
    explicit Examination(const RegularFile& file) : image_(file) {}

    std::string fault() {
        if (std::string wrong = image_.read(); !wrong.empty()) return wrong;
        for (const auto check : {&Examination::checkParts, &Examination::checkThreadData, &Examination::checkSections,
                                 &Examination::checkProtection, &Examination::checkTables, &Examination::checkTexts,
                                 &Examination::checkRelocations, &Examination::checkPackedRelocations,
                                 &Examination::checkHash, &Examination::checkOldHash, &Examination::checkSymbols,
                                 &Examination::checkVersions, &Examination::checkStart, &Examination::checkArrays})
            if (const std::string wrong = (this->*check)(); !wrong.empty()) return "it is damaged: " + wrong;
        return {};
    }

  private:
    std::string checkParts() {
        for (const Elf64_Phdr& part : image_.parts()) {
            const bool isRead = part.p_type == PT_NOTE || part.p_type == PT_GNU_PROPERTY || part.p_type == PT_PHDR ||
                                part.p_type == PT_GNU_EH_FRAME;
            if (isRead && image_.placeInFile(part.p_vaddr, std::max(part.p_memsz, part.p_filesz)) != part.p_offset)
                return "a program header points outside of its segments";
            if (part.p_type == PT_PHDR && part.p_offset != image_.header().e_phoff)
                return "its program headers are not where they say they are";
            if (part.p_type == PT_DYNAMIC && (part.p_flags & PF_W) != 0 &&
                !image_.segment(part.p_vaddr, part.p_filesz, PF_W))
                return "its dynamic section cannot be written";
        }
        return {};
    }

    std::string checkThreadData() {
        const auto data = image_.part(PT_TLS);
        if (!data) return {};
        if (data->p_memsz > kMostThreadData || data->p_align > kMostThreadData || data->p_filesz > data->p_memsz ||
            (data->p_align & (data->p_align - 1)) != 0)
            return "its data for each thread is of no sensible size";
        if (data->p_filesz > 0 && image_.placeInFile(data->p_vaddr, data->p_filesz) != data->p_offset)
            return "its data for each thread lies outside of its segments";
        return {};
    }

    /// The loader never looks at sections, but the code relies on all of them being in place.
    std::string checkSections() {
        for (const Elf64_Shdr& section : image_.sections()) {
            if ((section.sh_flags & SHF_ALLOC) == 0 || section.sh_size == 0) continue;
            const bool isEmpty = section.sh_type == SHT_NOBITS;
            if ((section.sh_flags & SHF_TLS) != 0 && !isThreadData(section))
                return "a section of data for each thread is not in that data";
            if ((section.sh_flags & SHF_TLS) != 0 && isEmpty) continue; // has no place of its own in memory
            const Elf64_Word flags = ((section.sh_flags & SHF_WRITE) != 0 ? PF_W : 0U) |
                                     ((section.sh_flags & SHF_EXECINSTR) != 0 ? PF_X : PF_R);
            if (!image_.segment(section.sh_addr, section.sh_size, flags) ||
                (!isEmpty && image_.placeInFile(section.sh_addr, section.sh_size) != section.sh_offset))
                return "a section is in no segment of its kind";
        }
        return {};
    }

    [[nodiscard]] bool isThreadData(const Elf64_Shdr& section) const {
        const auto data = image_.part(PT_TLS);
        return data && section.sh_addr >= data->p_vaddr && section.sh_addr - data->p_vaddr <= data->p_memsz &&
               section.sh_size <= data->p_memsz - (section.sh_addr - data->p_vaddr);
    }

    /// What is protected after relocation, in whole pages, as the loader does it.
    std::string checkProtection() {
        const auto part = image_.part(PT_GNU_RELRO);
        if (!part) return {};
        if (part->p_memsz > UINT64_MAX - part->p_vaddr) return "it protects more than there is";
        const auto page = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
        protectedFrom_ = part->p_vaddr / page * page;
        protectedTo_ = (part->p_vaddr + part->p_memsz) / page * page;
        if (protectedFrom_ >= protectedTo_) return {};
        const Elf64_Phdr* segment = image_.segment(part->p_vaddr, 0, PF_W);
        // The segment's last page is mapped as a whole.
        if (!segment || (segment->p_vaddr + segment->p_memsz + page - 1) / page * page < protectedTo_)
            return "it protects what is no data of its own";
        for (const Elf64_Shdr& section : image_.sections())
            if (section.sh_size != 0 && (image_.isSection(section, ".data") || image_.isSection(section, ".bss")) &&
                isProtected(section.sh_addr, section.sh_size))
                return "it protects data that the code writes to";
        return {};
    }

    [[nodiscard]] bool isProtected(std::uint64_t address, std::uint64_t size) const {
        return protectedFrom_ < protectedTo_ && address < protectedTo_ && address + size > protectedFrom_;
    }

    std::string checkTables() {
        for (const auto& [address, size, widthEntry, width] : kTables) {
            const auto at = image_.entry(address), bytes = image_.entry(size), each = image_.entry(widthEntry);
            if (at.has_value() != bytes.has_value()) return "a table has an address and no size, or a size alone";
            if (widthEntry != DT_NULL && (at ? each != width : each.has_value()))
                return "a table's entries are of no known size";
            if (at && (*bytes % width != 0 || !image_.placeInFile(*at, *bytes)))
                return "a table lies outside of its segments";
        }
        const bool hasCalls = image_.entry(DT_JMPREL).has_value();
        if (hasCalls ? image_.entry(DT_PLTREL) != DT_RELA : image_.entry(DT_PLTREL).has_value())
            return "its relocations of calls are of no known kind";
        if (hasCalls && !image_.segment(image_.entry(DT_PLTGOT).value_or(0), 3 * sizeof(Elf64_Addr), PF_W))
            return "its table of calls cannot be written";
        if (image_.entry(DT_SYMENT) != sizeof(Elf64_Sym)) return "its symbols are of no known size";
        return {};
    }

    std::string checkTexts() {
        const auto at = image_.entry(DT_STRTAB), size = image_.entry(DT_STRSZ);
        const auto texts = at && size ? image_.records<char>(*at, *size) : std::nullopt;
        if (!texts || texts->empty() || texts->back() != '\0') return "its texts lie outside of it";
        texts_ = *texts;
        for (const Elf64_Dyn& entry : image_.entries())
            for (const Elf64_Sxword tag : {DT_NEEDED, DT_SONAME, DT_RPATH, DT_RUNPATH, DT_FILTER, DT_AUXILIARY})
                if (entry.d_tag == tag && entry.d_un.d_val >= texts_.size()) return "a name lies outside of its texts";
        return {};
    }

    std::string checkRelocations() {
        const std::uint64_t size = image_.entry(DT_RELASZ).value_or(0), calls = image_.entry(DT_PLTRELSZ).value_or(0);
        const auto data = image_.records<Elf64_Rela>(image_.entry(DT_RELA).value_or(0), size / sizeof(Elf64_Rela));
        const auto code = image_.records<Elf64_Rela>(image_.entry(DT_JMPREL).value_or(0), calls / sizeof(Elf64_Rela));
        if ((size != 0 && !data) || (calls != 0 && !code)) return "its relocations lie outside of its segments";
        const std::uint64_t relative = image_.entry(DT_RELACOUNT).value_or(0);
        if (relative > size / sizeof(Elf64_Rela)) return "it counts more relocations than it has";
        for (std::uint64_t i = 0; i < relative; ++i)
            if (ELF64_R_TYPE((*data)[i].r_info) != kRelative) return "it counts relocations of another kind";
        for (const auto* table : {&data, &code})
            for (std::size_t i = 0; *table && i < (*table)->size(); ++i)
                if (std::string wrong = checkRelocation((**table)[i], table == &code); !wrong.empty()) return wrong;
        return checkThatAllAreRelocated();
    }

    std::string checkRelocation(const Elf64_Rela& relocation, bool isCall) {
        const std::uint32_t type = ELF64_R_TYPE(relocation.r_info);
        if (type == kNothing) return {};
        const Elf64_Word flags = hasTextRelocations() ? 0U : PF_W;
        if (!image_.segment(relocation.r_offset, 4, flags)) return "a relocation changes what is no data of its own";
        if (isCall && !isBoundAtOnce() && isProtected(relocation.r_offset, sizeof(Elf64_Addr)))
            return "it protects its table of calls before that is complete";
        if (type == kChosen && !isCode(static_cast<std::uint64_t>(relocation.r_addend)))
            return "a relocation asks what is no code";
        symbolCount_ = std::max(symbolCount_, ELF64_R_SYM(relocation.r_info) + 1);
        // What a symbol gives is not known here; what is relative to the object itself is.
        relocated_.emplace_back(relocation.r_offset,
                                type == kRelative ? static_cast<std::uint64_t>(relocation.r_addend) : 0);
        return {};
    }

    /// An object whose tables leave out a part of its relocations loads and then jumps into nowhere.
    std::string checkThatAllAreRelocated() {
        for (const Elf64_Shdr& section : image_.sections())
            if (section.sh_type == SHT_RELA && (section.sh_flags & SHF_ALLOC) != 0 && section.sh_size != 0 &&
                !isIn(section, DT_RELA, DT_RELASZ) && !isIn(section, DT_JMPREL, DT_PLTRELSZ))
                return "its tables leave out relocations";
        return {};
    }

    [[nodiscard]] bool isIn(const Elf64_Shdr& section, Elf64_Sxword table, Elf64_Sxword bytes) const {
        const auto at = image_.entry(table);
        return at && section.sh_addr >= *at && section.sh_addr + section.sh_size <= *at + *image_.entry(bytes);
    }

    /// Addresses, each followed by bit masks: which of the next 63 words are relative to the object itself.
    std::string checkPackedRelocations() {
        const auto table = image_.records<Elf64_Relr>(image_.entry(DT_RELR).value_or(0),
                                                      image_.entry(DT_RELRSZ).value_or(0) / sizeof(Elf64_Relr));
        std::uint64_t next = 0;
        for (std::size_t i = 0; table && i < table->size(); ++i) {
            const Elf64_Relr word = (*table)[i];
            if ((word & 1) == 0) next = word;
            for (std::uint64_t bits = (word & 1) == 0 ? 1 : word >> 1, at = next; bits != 0; bits >>= 1, at += 8) {
                if ((bits & 1) == 0) continue;
                if (!image_.segment(at, sizeof(Elf64_Addr), PF_W)) return "a packed relocation changes no data";
                const auto value = image_.record<Elf64_Addr>(at);
                relocated_.emplace_back(at, value.value_or(0));
            }
            next += (word & 1) == 0 ? 8 : 63 * sizeof(Elf64_Addr);
        }
        return {};
    }

    std::string checkHash() {
        const auto at = image_.entry(DT_GNU_HASH);
        if (!at) return {};
        constexpr const char* kOutside = "its hash table lies outside of its segments";
        const auto head = image_.records<std::uint32_t>(*at, 4);
        if (!head) return kOutside;
        const std::uint32_t bucketCount = (*head)[0], first = (*head)[1], words = (*head)[2];
        if (bucketCount == 0 || words == 0 || (words & (words - 1)) != 0) return "its hash table is of no known shape";
        const std::uint64_t bucketsAt = *at + 16 + std::uint64_t{words} * 8;
        const std::uint64_t chainsAt = bucketsAt + std::uint64_t{bucketCount} * 4;
        const auto buckets = image_.records<std::uint32_t>(bucketsAt, bucketCount);
        if (!image_.placeInFile(*at + 16, std::uint64_t{words} * 8) || !buckets) return kOutside;
        for (const std::uint32_t bucket : *buckets)
            if (bucket != 0 && bucket < first) return "its hash table leads to no symbol";
        // The chains stand one after the other, so that the last one ends them all.
        std::uint64_t last = *std::max_element(buckets->begin(), buckets->end());
        if (last == 0) return {};
        for (;; ++last) {
            const auto hash = image_.record<std::uint32_t>(chainsAt + (last - first) * 4);
            if (!hash || last > kMostSymbols) return kOutside;
            if ((*hash & 1) != 0) break;
        }
        const auto hashes = image_.records<std::uint32_t>(chainsAt, last - first + 1);
        if (!hashes) return kOutside;
        symbolCount_ = std::max(symbolCount_, last + 1);
        firstHashed_ = first;
        hashes_ = *hashes;
        return {};
    }

    std::string checkOldHash() {
        const auto at = image_.entry(DT_HASH);
        if (!at) return {};
        const auto head = image_.records<std::uint32_t>(*at, 2);
        const auto table =
            head ? image_.records<std::uint32_t>(*at + 8, std::uint64_t{(*head)[0]} + (*head)[1]) : std::nullopt;
        if (!table) return "its hash table lies outside of its segments";
        for (const std::uint32_t symbol : *table)
            if (symbol >= (*head)[1]) return "its hash table leads to no symbol";
        symbolCount_ = std::max(symbolCount_, std::uint64_t{(*head)[1]});
        oldBuckets_.assign(table->begin(), table->begin() + (*head)[0]);
        oldChains_.assign(table->begin() + (*head)[0], table->end());
        return {};
    }

    std::string checkSymbols() {
        const auto symbols = image_.records<Elf64_Sym>(image_.entry(DT_SYMTAB).value_or(0), symbolCount_);
        if (!image_.entry(DT_SYMTAB) || !symbols) return "its symbols lie outside of its segments";
        for (const Elf64_Sym& symbol : *symbols)
            if (symbol.st_name >= texts_.size()) return "the name of a symbol lies outside of its texts";
        constexpr const char* kOther = "its hash table is not that of its symbols";
        for (std::size_t i = 0; i < hashes_.size(); ++i)
            if ((hashOf(&texts_[(*symbols)[firstHashed_ + i].st_name]) | 1) != (hashes_[i] | 1)) return kOther;
        for (std::size_t bucket = 0; bucket < oldBuckets_.size(); ++bucket) {
            std::size_t steps = 0;
            for (std::uint32_t i = oldBuckets_[bucket]; i != 0; i = oldChains_[i])
                if (++steps > oldChains_.size() ||
                    oldHashOf(&texts_[(*symbols)[i].st_name]) % oldBuckets_.size() != bucket)
                    return kOther;
        }
        return {};
    }

    std::string checkVersions() {
        const bool needs = image_.entry(DT_VERNEED).has_value(), defines = image_.entry(DT_VERDEF).has_value();
        const auto at = image_.entry(DT_VERSYM);
        if (at.has_value() != (needs || defines) || needs != image_.entry(DT_VERNEEDNUM).has_value() ||
            defines != image_.entry(DT_VERDEFNUM).has_value())
            return "its versions are not complete";
        if (!at) return {};
        std::uint64_t highest = 0;
        if (!readNeededVersions(highest)) return "the versions that it needs are not in order";
        if (!readDefinedVersions(highest)) return "the versions that it defines are not in order";
        const auto versions = image_.records<Elf64_Versym>(*at, symbolCount_);
        if (!versions) return "the versions of its symbols lie outside of its segments";
        for (const Elf64_Versym version : *versions)
            if ((version & 0x7FFFU) > std::max<std::uint64_t>(highest, 1)) return "a symbol has an unknown version";
        return {};
    }

    bool readNeededVersions(std::uint64_t& highest) const {
        auto at = image_.entry(DT_VERNEED);
        for (std::size_t count = 0; at;) {
            const auto need = image_.record<Elf64_Verneed>(*at);
            // The loader is sure to find each of these files among those that it has loaded for this one.
            if (!need || !isNeeded(need->vn_file)) return false;
            for (std::uint64_t next = *at + need->vn_aux;;) {
                const auto version = image_.record<Elf64_Vernaux>(next);
                if (!version || ++count > kMostVersions || version->vna_name >= texts_.size()) return false;
                highest = std::max(highest, std::uint64_t{version->vna_other} & 0x7FFFU);
                if (version->vna_next == 0) break;
                next += version->vna_next;
            }
            at = need->vn_next != 0 ? std::optional(*at + need->vn_next) : std::nullopt;
        }
        return true;
    }

    [[nodiscard]] bool isNeeded(std::uint64_t file) const {
        return file < texts_.size() &&
               std::any_of(image_.entries().begin(), image_.entries().end(), [&](const Elf64_Dyn& entry) {
                   return entry.d_tag == DT_NEEDED &&
                          std::string_view(&texts_[entry.d_un.d_val]) == std::string_view(&texts_[file]);
               });
    }

    bool readDefinedVersions(std::uint64_t& highest) const {
        auto at = image_.entry(DT_VERDEF);
        for (std::size_t count = 0; at;) {
            const auto definition = image_.record<Elf64_Verdef>(*at);
            if (!definition || ++count > kMostVersions) return false;
            const auto name = image_.record<Elf64_Verdaux>(*at + definition->vd_aux);
            if (!name || name->vda_name >= texts_.size()) return false;
            highest = std::max(highest, std::uint64_t{definition->vd_ndx} & 0x7FFFU);
            at = definition->vd_next != 0 ? std::optional(*at + definition->vd_next) : std::nullopt;
        }
        return true;
    }

    /// The two functions that the loader calls by address.
    std::string checkStart() {
        for (const auto& [tag, name] : {std::pair(DT_INIT, ".init"), std::pair(DT_FINI, ".fini")})
            if (const auto address = image_.entry(tag); address && !isFunction(*address, name))
                return "it begins or ends with what is no function";
        return {};
    }

    /// Functions of the C library's own start files stand in a section of their own, others are known for unwinding.
    [[nodiscard]] bool isFunction(std::uint64_t address, const char* section) const {
        if (!isCode(address)) return false;
        for (const Elf64_Shdr& one : image_.sections())
            if (one.sh_addr == address && image_.isSection(one, section)) return true;
        const auto unwinding = image_.part(PT_GNU_EH_FRAME);
        const auto head = unwinding ? image_.records<std::int32_t>(unwinding->p_vaddr, 3) : std::nullopt;
        constexpr std::int32_t kUsualTable = 0x3B031B01; // how the linkers write it; of another one nothing is known
        if (!head || (*head)[0] != kUsualTable) return image_.sections().empty();
        const auto count = static_cast<std::uint32_t>((*head)[2]);
        const auto table = image_.records<std::int32_t>(unwinding->p_vaddr + 12, std::uint64_t{count} * 2);
        for (std::size_t i = 0; table && i < table->size(); i += 2)
            if (unwinding->p_vaddr + static_cast<std::uint64_t>(std::int64_t{(*table)[i]}) == address) return true;
        return image_.sections().empty();
    }

    /// The functions that the loader calls through a table: each must be one only once it is relocated.
    std::string checkArrays() {
        std::sort(relocated_.begin(), relocated_.end());
        for (const auto& [array, bytes, type] : {std::tuple(DT_INIT_ARRAY, DT_INIT_ARRAYSZ, SHT_INIT_ARRAY),
                                                 std::tuple(DT_FINI_ARRAY, DT_FINI_ARRAYSZ, SHT_FINI_ARRAY)}) {
            const auto at = image_.entry(array);
            const std::uint64_t size = image_.entry(bytes).value_or(0);
            for (const Elf64_Shdr& section : image_.sections())
                if (section.sh_type == static_cast<Elf64_Word>(type) && section.sh_size != 0 &&
                    (!at || section.sh_addr != *at || section.sh_size != size))
                    return "its table of functions to begin or end with is not where it says";
            for (std::uint64_t offset = 0; at && offset < size; offset += sizeof(Elf64_Addr))
                if (!becomesCode(*at + offset)) return "it begins or ends with what is no function";
        }
        return {};
    }

    [[nodiscard]] bool becomesCode(std::uint64_t address) const {
        const auto found = std::lower_bound(relocated_.begin(), relocated_.end(), std::pair(address, std::uint64_t{0}));
        return found != relocated_.end() && found->first == address && (found->second == 0 || isCode(found->second));
    }

    [[nodiscard]] bool isCode(std::uint64_t address) const { return image_.segment(address, 1, PF_X) != nullptr; }

    [[nodiscard]] bool hasTextRelocations() const {
        return image_.entry(DT_TEXTREL) || (image_.entry(DT_FLAGS).value_or(0) & DF_TEXTREL) != 0;
    }

    [[nodiscard]] bool isBoundAtOnce() const {
        return image_.entry(DT_BIND_NOW) || (image_.entry(DT_FLAGS).value_or(0) & DF_BIND_NOW) != 0 ||
               (image_.entry(DT_FLAGS_1).value_or(0) & DF_1_NOW) != 0;
    }

    ElfImage image_;
    std::vector<char> texts_;
    std::uint64_t symbolCount_ = 1; ///< as many as anything refers to
    std::uint64_t firstHashed_ = 0;
    std::vector<std::uint32_t> hashes_, oldBuckets_, oldChains_;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> relocated_; ///< addresses, and what they become if known
    std::uint64_t protectedFrom_ = 0, protectedTo_ = 0;
};

} // namespace

std::string faultOfSharedObject(const RegularFile& file) {
    return file ? Examination(file).fault() : "it cannot be read";
}

} // namespace platform
