#pragma once

#include "platform/foundation/RegularFile.h"

#include <cstdint>
#include <elf.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// What the headers of a shared object say, and what its file would put at an address of memory.
///
///     ElfImage image(file);
///     if (image.read().empty()) image.records<Elf64_Sym>(*image.entry(DT_SYMTAB), 4);
///
/// Whatever is asked of it is bounded by the file, and by a length that no library reaches. Any thread.
class ElfImage {
  public:
    explicit ElfImage(const RegularFile& file) : file_(file) {}

    /// Reads the headers and the dynamic section; tells what is wrong with them, empty when nothing is.
    [[nodiscard]] std::string read();

    [[nodiscard]] const Elf64_Ehdr& header() const { return header_; }
    [[nodiscard]] const std::vector<Elf64_Phdr>& parts() const { return parts_; }       ///< all program headers
    [[nodiscard]] const std::vector<Elf64_Shdr>& sections() const { return sections_; } ///< may well be empty
    [[nodiscard]] const std::vector<Elf64_Dyn>& entries() const { return list_; }
    /// The dynamic entry of a tag, the last one as it is for the loader.
    [[nodiscard]] std::optional<std::uint64_t> entry(Elf64_Sxword tag) const;
    /// The last program header of a type.
    [[nodiscard]] std::optional<Elf64_Phdr> part(Elf64_Word type) const;
    [[nodiscard]] bool isSection(const Elf64_Shdr& section, const std::string& name) const;

    /// The segment whose memory holds so many bytes, under all of these flags; null when there is none.
    [[nodiscard]] const Elf64_Phdr* segment(std::uint64_t address, std::uint64_t size, Elf64_Word flags) const;
    /// Where the file keeps what will be read at an address; nothing when that is in no one segment's bytes.
    [[nodiscard]] std::optional<std::uint64_t> placeInFile(std::uint64_t address, std::uint64_t size) const;

    /// What will stand at an address; nothing when the file does not have that much there.
    template<class T>
    [[nodiscard]] std::optional<std::vector<T>> records(std::uint64_t address, std::uint64_t count) const {
        const auto place = count <= kMostBytes / sizeof(T) ? placeInFile(address, count * sizeof(T)) : std::nullopt;
        return place ? tableAt<T>(*place, count) : std::nullopt;
    }
    template<class T>
    [[nodiscard]] std::optional<T> record(std::uint64_t address) const {
        const auto found = records<T>(address, 1);
        return found ? std::optional(found->front()) : std::nullopt;
    }

  private:
    /// Far more than any table of a library has; a file may be of any length, and sparse.
    static constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 27;

    template<class T>
    [[nodiscard]] std::optional<std::vector<T>> tableAt(std::uint64_t offset, std::uint64_t count) const {
        if (count > kMostBytes / sizeof(T) || !isInFile(offset, count * sizeof(T))) return std::nullopt;
        std::vector<T> table(count);
        return file_.read(offset, table.data(), count * sizeof(T)) ? std::optional(std::move(table)) : std::nullopt;
    }
    [[nodiscard]] bool isInFile(std::uint64_t offset, std::uint64_t size) const {
        return offset <= file_.size() && size <= file_.size() - offset;
    }

    std::string readHeader();
    std::string readParts();
    std::string readDynamic();

    const RegularFile& file_;
    Elf64_Ehdr header_{};
    std::vector<Elf64_Phdr> parts_, loaded_;
    std::vector<Elf64_Shdr> sections_;
    std::vector<char> sectionNames_;
    std::vector<Elf64_Dyn> list_;
    std::map<Elf64_Sxword, std::uint64_t> entries_;
};

} // namespace platform
