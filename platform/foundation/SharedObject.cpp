#include "platform/foundation/SharedObject.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <fstream>
#include <optional>

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

template<class T>
std::optional<T> readAt(std::ifstream& in, std::uint64_t offset) {
    T record{};
    if (!in.seekg(static_cast<std::streamoff>(offset))) return std::nullopt;
    if (!in.read(reinterpret_cast<char*>(&record), sizeof record)) return std::nullopt;
    return record;
}

/// Empty when the file is a whole shared object for this machine, else what is wrong with it.
std::string faultOf(const std::filesystem::path& file) {
    std::error_code failed;
    const std::uint64_t size = std::filesystem::file_size(file, failed);
    std::ifstream in(file, std::ios::binary);
    if (failed || !in) return "it cannot be read";
    const auto header = readAt<Elf64_Ehdr>(in, 0);
    if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0) return "it is no shared object";
    if (header->e_ident[EI_CLASS] != ELFCLASS64 || header->e_ident[EI_DATA] != kThisByteOrder ||
        header->e_machine != kThisMachine)
        return "it is for another machine";
    if (header->e_type != ET_DYN || header->e_phentsize != sizeof(Elf64_Phdr)) return "it is no shared object";
    for (std::uint64_t i = 0; i < header->e_phnum; ++i) {
        if (header->e_phoff > size) return "it is cut short";
        const auto part = readAt<Elf64_Phdr>(in, header->e_phoff + i * sizeof(Elf64_Phdr));
        if (!part || part->p_offset > size || part->p_filesz > size - part->p_offset) return "it is cut short";
    }
    return {};
}

} // namespace

Result<void*> loadSharedObject(const std::filesystem::path& file, Binding binding) {
    if (std::string fault = faultOf(file); !fault.empty())
        return Result<void*>::failure(file.string() + " cannot be loaded: " + fault);
    // RTLD_NODELETE: objects and page classes of the library outlive every request to unload it.
    void* handle = dlopen(file.c_str(), (binding == Binding::Lazy ? RTLD_LAZY : RTLD_NOW) | RTLD_LOCAL | RTLD_NODELETE);
    if (!handle) return Result<void*>::failure(dlerror());
    return handle;
}

} // namespace platform
