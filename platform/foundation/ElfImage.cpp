#include "platform/foundation/ElfImage.h"

#include <algorithm>
#include <cstring>

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
/// Far more dynamic entries than any library has.
constexpr std::uint64_t kMostEntries = 4096;

bool isPowerOfTwo(std::uint64_t number) {
    return number != 0 && (number & (number - 1)) == 0;
}

} // namespace

std::string ElfImage::read() {
    for (const auto step : {&ElfImage::readHeader, &ElfImage::readParts, &ElfImage::readDynamic})
        if (std::string wrong = (this->*step)(); !wrong.empty()) return wrong;
    return {};
}

std::string ElfImage::readHeader() {
    const auto header = tableAt<Elf64_Ehdr>(0, 1);
    if (!header || std::memcmp(header->front().e_ident, ELFMAG, SELFMAG) != 0) return "it is no shared object";
    header_ = header->front();
    if (header_.e_ident[EI_CLASS] != ELFCLASS64 || header_.e_ident[EI_DATA] != kThisByteOrder ||
        header_.e_machine != kThisMachine)
        return "it is for another machine";
    if (header_.e_type != ET_DYN || header_.e_phentsize != sizeof(Elf64_Phdr)) return "it is no shared object";
    if (header_.e_shoff == 0 || header_.e_shnum == 0) return {};
    // Nobody maps the section headers, but they stand last: a file that has lost them has lost its end.
    auto sections = tableAt<Elf64_Shdr>(header_.e_shoff, header_.e_shnum);
    if (!sections) return kCutShort;
    if (header_.e_shentsize != sizeof(Elf64_Shdr)) return "it is damaged: its section headers are of no known size";
    sections_ = std::move(*sections);
    if (header_.e_shstrndx >= sections_.size()) return {};
    const Elf64_Shdr& names = sections_[header_.e_shstrndx];
    sectionNames_ = tableAt<char>(names.sh_offset, names.sh_size).value_or(std::vector<char>());
    return {};
}

std::string ElfImage::readParts() {
    std::uint64_t end = 0; // of the segment before, in memory
    auto parts = tableAt<Elf64_Phdr>(header_.e_phoff, header_.e_phnum);
    if (!parts) return kCutShort;
    parts_ = std::move(*parts);
    for (const Elf64_Phdr& part : parts_) {
        if (!isInFile(part.p_offset, part.p_filesz)) return kCutShort;
        if (part.p_type != PT_LOAD) continue;
        // The loader reserves from the first to the last and maps each over that, wherever it says it goes.
        if (part.p_vaddr < end || part.p_memsz > UINT64_MAX - part.p_vaddr || part.p_memsz < part.p_filesz)
            return "it is damaged: its segments overlap";
        if (!isPowerOfTwo(part.p_align) || (part.p_vaddr - part.p_offset) % part.p_align != 0)
            return "it is damaged: a segment is not aligned";
        end = part.p_vaddr + part.p_memsz;
        loaded_.push_back(part);
    }
    return loaded_.empty() || !part(PT_DYNAMIC) ? "it is no shared object" : "";
}

std::string ElfImage::readDynamic() {
    const Elf64_Phdr dynamic = *part(PT_DYNAMIC);
    if (placeInFile(dynamic.p_vaddr, dynamic.p_filesz) != dynamic.p_offset)
        return "it is damaged: its dynamic section lies outside of its segments";
    const std::uint64_t count = std::min(dynamic.p_filesz / sizeof(Elf64_Dyn), kMostEntries);
    auto list = tableAt<Elf64_Dyn>(dynamic.p_offset, count);
    if (list) list_ = std::move(*list);
    const auto end = std::find_if(list_.begin(), list_.end(), [](const auto& entry) { return entry.d_tag == DT_NULL; });
    if (end == list_.end()) return "it is damaged: its dynamic section has no end";
    list_.erase(end, list_.end());
    for (const Elf64_Dyn& entry : list_)
        entries_.insert_or_assign(entry.d_tag, entry.d_un.d_val);
    return {};
}

std::optional<std::uint64_t> ElfImage::entry(Elf64_Sxword tag) const {
    const auto found = entries_.find(tag);
    return found == entries_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Elf64_Phdr> ElfImage::part(Elf64_Word type) const {
    const auto found =
        std::find_if(parts_.rbegin(), parts_.rend(), [type](const Elf64_Phdr& part) { return part.p_type == type; });
    return found == parts_.rend() ? std::nullopt : std::optional(*found);
}

bool ElfImage::isSection(const Elf64_Shdr& section, const std::string& name) const {
    // The terminating zero is compared too.
    return section.sh_name < sectionNames_.size() && name.size() < sectionNames_.size() - section.sh_name &&
           std::memcmp(sectionNames_.data() + section.sh_name, name.c_str(), name.size() + 1) == 0;
}

const Elf64_Phdr* ElfImage::segment(std::uint64_t address, std::uint64_t size, Elf64_Word flags) const {
    for (const Elf64_Phdr& part : loaded_)
        if ((part.p_flags & flags) == flags && address >= part.p_vaddr && address - part.p_vaddr <= part.p_memsz &&
            size <= part.p_memsz - (address - part.p_vaddr))
            return &part;
    return nullptr;
}

std::optional<std::uint64_t> ElfImage::placeInFile(std::uint64_t address, std::uint64_t size) const {
    for (const Elf64_Phdr& part : loaded_)
        if ((part.p_flags & (PF_R | PF_X)) != 0 && address >= part.p_vaddr && address - part.p_vaddr <= part.p_filesz &&
            size <= part.p_filesz - (address - part.p_vaddr))
            return part.p_offset + (address - part.p_vaddr);
    return std::nullopt;
}

} // namespace platform
