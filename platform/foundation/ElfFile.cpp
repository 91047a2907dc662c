#include "platform/foundation/ElfFile.h"

#include <algorithm>
#include <cstring>
#include <elf.h>
#include <map>
#include <optional>
#include <vector>

namespace platform {
namespace {

constexpr unsigned char kThisByteOrder = ELFDATA2LSB;
#if defined(__x86_64__)
constexpr Elf64_Half kThisMachine = EM_X86_64;
#elif defined(__aarch64__)
constexpr Elf64_Half kThisMachine = EM_AARCH64;
#else
#error "name this machine's ELF number here"
#endif

constexpr const char* kCutShort = "it is cut short";
/// Far more dynamic entries than any library has; a file may be of any length, and sparse.
constexpr std::uint64_t kMostEntries = 4096;
constexpr const char* kDamaged = "it is damaged";

/// Tables that the loader walks: where they are, how many bytes they have, and of how many each entry is.
struct Table {
    Elf64_Sxword address, size;
    std::size_t width;
};
constexpr Table kTables[] = {{DT_RELA, DT_RELASZ, sizeof(Elf64_Rela)},
                             {DT_JMPREL, DT_PLTRELSZ, sizeof(Elf64_Rela)},
                             {DT_RELR, DT_RELRSZ, sizeof(Elf64_Relr)},
                             {DT_INIT_ARRAY, DT_INIT_ARRAYSZ, sizeof(Elf64_Addr)},
                             {DT_FINI_ARRAY, DT_FINI_ARRAYSZ, sizeof(Elf64_Addr)}};

/// One file under examination. Each step gives what is wrong, empty when nothing is, and may stand on the steps before.
class ElfFile {
  public:
    explicit ElfFile(const RegularFile& file) : file_(file) {}

    std::string fault() {
        for (const auto step : {&ElfFile::readHeader, &ElfFile::readSegments, &ElfFile::readDynamic,
                                &ElfFile::checkTexts, &ElfFile::checkTables})
            if (std::string wrong = (this->*step)(); !wrong.empty()) return wrong;
        return {};
    }

  private:
    template<class T>
    [[nodiscard]] std::optional<T> readAt(std::uint64_t offset) const {
        T record{};
        return file_.read(offset, &record, sizeof record) ? std::optional(record) : std::nullopt;
    }

    /// A table of so many entries; empty when the file does not have that much there.
    template<class T>
    [[nodiscard]] std::vector<T> tableAt(std::uint64_t offset, std::uint64_t count) const {
        if (offset > file_.size() || count > (file_.size() - offset) / sizeof(T)) return {};
        std::vector<T> table(count);
        return file_.read(offset, table.data(), count * sizeof(T)) ? table : std::vector<T>();
    }

    [[nodiscard]] bool isInFile(std::uint64_t offset, std::uint64_t size) const {
        return offset <= file_.size() && size <= file_.size() - offset;
    }

    std::string readHeader() {
        const auto header = readAt<Elf64_Ehdr>(0);
        if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0) return "it is no shared object";
        header_ = *header;
        if (header_.e_ident[EI_CLASS] != ELFCLASS64 || header_.e_ident[EI_DATA] != kThisByteOrder ||
            header_.e_machine != kThisMachine)
            return "it is for another machine";
        if (header_.e_type != ET_DYN || header_.e_phentsize != sizeof(Elf64_Phdr)) return "it is no shared object";
        // Nobody maps the section headers, but they stand last: a file that has lost them has lost its end.
        const std::uint64_t sections = std::uint64_t{header_.e_shnum} * header_.e_shentsize;
        return header_.e_shoff != 0 && !isInFile(header_.e_shoff, sections) ? kCutShort : "";
    }

    std::string readSegments() {
        std::uint64_t end = 0; // of the one before, in memory
        const auto parts = tableAt<Elf64_Phdr>(header_.e_phoff, header_.e_phnum);
        if (parts.size() != header_.e_phnum) return kCutShort;
        for (const Elf64_Phdr& part : parts) {
            if (!isInFile(part.p_offset, part.p_filesz)) return kCutShort;
            if (part.p_type == PT_DYNAMIC) dynamic_ = part;
            if (part.p_type != PT_LOAD) continue;
            // The loader reserves from the first to the last and maps each over that, wherever it says it goes.
            if (part.p_vaddr < end || part.p_memsz > UINT64_MAX - part.p_vaddr || part.p_memsz < part.p_filesz)
                return kDamaged;
            end = part.p_vaddr + part.p_memsz;
            loaded_.push_back(part);
        }
        return loaded_.empty() || !dynamic_ ? "it is no shared object" : "";
    }

    std::string readDynamic() {
        const auto place = placeInFile(dynamic_->p_vaddr, dynamic_->p_filesz);
        if (!place || *place != dynamic_->p_offset) return kDamaged;
        const std::uint64_t count = std::min(dynamic_->p_filesz / sizeof(Elf64_Dyn), kMostEntries);
        for (const Elf64_Dyn& entry : tableAt<Elf64_Dyn>(*place, count)) {
            if (entry.d_tag == DT_NULL) return {};
            if (entry.d_tag == DT_NEEDED || entry.d_tag == DT_SONAME || entry.d_tag == DT_RPATH ||
                entry.d_tag == DT_RUNPATH)
                texts_.push_back(entry.d_un.d_val);
            entries_.insert_or_assign(entry.d_tag, entry.d_un.d_val);
        }
        return kDamaged; // without an end
    }

    std::string checkTexts() {
        const auto size = entry(DT_STRSZ);
        const auto table = entry(DT_STRTAB) && size ? placeInFile(*entry(DT_STRTAB), *size) : std::nullopt;
        if (!table || *size == 0 || !entry(DT_SYMTAB)) return kDamaged;
        if (const auto last = readAt<char>(*table + *size - 1); !last || *last != '\0') return kDamaged;
        for (const std::uint64_t text : texts_)
            if (text >= *size) return kDamaged;
        return {};
    }

    std::string checkTables() {
        for (const Elf64_Sxword alone : {DT_SYMTAB, DT_HASH, DT_GNU_HASH, DT_VERSYM, DT_VERNEED})
            if (const auto address = entry(alone); address && !placeInFile(*address, 1)) return kDamaged;
        for (const Elf64_Sxword code : {DT_INIT, DT_FINI})
            if (const auto address = entry(code); address && !isCode(*address)) return kDamaged;
        for (const auto& [table, size, width] : kTables) {
            const auto bytes = entry(size);
            if (const auto address = entry(table);
                address && (!bytes || *bytes % width != 0 || !placeInFile(*address, *bytes)))
                return kDamaged;
        }
        const bool usual = entry(DT_SYMENT) == sizeof(Elf64_Sym) &&
                           entry(DT_RELAENT).value_or(sizeof(Elf64_Rela)) == sizeof(Elf64_Rela) &&
                           (!entry(DT_JMPREL) || entry(DT_PLTREL) == DT_RELA) &&
                           (!entry(DT_VERNEED) || (entry(DT_VERSYM) && entry(DT_VERNEEDNUM)));
        return usual ? "" : kDamaged;
    }

    [[nodiscard]] bool isCode(std::uint64_t address) const {
        return std::any_of(loaded_.begin(), loaded_.end(), [address](const Elf64_Phdr& part) {
            return (part.p_flags & PF_X) != 0 && address >= part.p_vaddr && address - part.p_vaddr < part.p_filesz;
        });
    }

    [[nodiscard]] std::optional<std::uint64_t> entry(Elf64_Sxword tag) const {
        const auto found = entries_.find(tag);
        return found == entries_.end() ? std::nullopt : std::optional(found->second);
    }

    /// Where the file keeps what will be mapped at an address; nothing when that is in no one segment's bytes.
    [[nodiscard]] std::optional<std::uint64_t> placeInFile(std::uint64_t address, std::uint64_t size) const {
        for (const Elf64_Phdr& part : loaded_)
            if (address >= part.p_vaddr && address - part.p_vaddr <= part.p_filesz &&
                size <= part.p_filesz - (address - part.p_vaddr))
                return part.p_offset + (address - part.p_vaddr);
        return std::nullopt;
    }

    const RegularFile& file_;
    Elf64_Ehdr header_{};
    std::vector<Elf64_Phdr> loaded_;
    std::optional<Elf64_Phdr> dynamic_;
    std::map<Elf64_Sxword, std::uint64_t> entries_;
    std::vector<std::uint64_t> texts_;
};

} // namespace

std::string faultOfSharedObject(const RegularFile& file) {
    return file ? ElfFile(file).fault() : "it cannot be read";
}

} // namespace platform
