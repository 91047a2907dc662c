// Any file is found fit to be mapped or is not, the same each time. One that is fit is not so any more once the last of
// what is mapped is cut off. Nothing is mapped here: a file that is fit may still hold any code.

#include "Fuzzer.h"
#include "InputFile.h"

#include "platform/foundation/ElfFile.h"

#include <algorithm>
#include <cstring>
#include <elf.h>

using fuzzing::require;
using platform::faultOfSharedObject;
using platform::RegularFile;

namespace {

template<class T>
T recordAt(std::string_view file, std::size_t offset) {
    require(offset <= file.size() && sizeof(T) <= file.size() - offset);
    T record{};
    std::memcpy(&record, file.data() + offset, sizeof record);
    return record;
}

/// Where the last segment ends in a file that has been found fit.
std::size_t endOfSegments(std::string_view file) {
    const auto header = recordAt<Elf64_Ehdr>(file, 0);
    std::size_t end = 0;
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        const auto part = recordAt<Elf64_Phdr>(file, header.e_phoff + i * sizeof(Elf64_Phdr));
        if (part.p_type == PT_LOAD && part.p_filesz > 0) end = std::max(end, part.p_offset + part.p_filesz);
    }
    return end;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const fuzzing::InputFile file("Library");
    const std::string_view contents = fuzzing::textOf(bytes, size);
    file.write(contents);
    const std::string fault = faultOfSharedObject(RegularFile(file.path()));
    require(faultOfSharedObject(RegularFile(file.path())) == fault);
    if (!fault.empty()) return 0;
    ++fuzzing::taken;

    const std::size_t end = endOfSegments(contents);
    require(end > 0 && end <= size);
    file.write(contents.substr(0, end - 1));
    require(!faultOfSharedObject(RegularFile(file.path())).empty());
    return 0;
}
