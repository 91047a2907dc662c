#include "platform/foundation/ElfFile.h"

#include "tests/support/DeviceFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <elf.h>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// The bytes of a small library, by the names of what is in them.
class Library {
  public:
    explicit Library(const std::string& name) {
        std::ifstream file(LUMORA_SOURCE "/fuzzing/seeds/SharedObject/" + name, std::ios::binary);
        bytes_.assign(std::istreambuf_iterator<char>(file), {});
        if (bytes_.size() < sizeof(Elf64_Ehdr)) throw std::runtime_error("there is no library " + name);
    }

    [[nodiscard]] const std::vector<char>& bytes() const { return bytes_; }
    Elf64_Ehdr& header() { return inFile<Elf64_Ehdr>(0); }
    /// The first program header of a type, or another one.
    Elf64_Phdr& part(Elf64_Word type, int before = 0) {
        for (std::size_t i = 0; i < header().e_phnum; ++i) {
            auto& one = inFile<Elf64_Phdr>(header().e_phoff + i * sizeof(Elf64_Phdr));
            if (one.p_type == type && before-- == 0) return one;
        }
        throw std::runtime_error("there is no such program header");
    }
    Elf64_Shdr& section(std::string_view name) {
        const auto names = sectionAt(header().e_shstrndx).sh_offset;
        for (std::size_t i = 0; i < header().e_shnum; ++i)
            if (&inFile<char>(names + sectionAt(i).sh_name) == name) return sectionAt(i);
        throw std::runtime_error("there is no such section");
    }
    Elf64_Dyn& entry(Elf64_Sxword tag) {
        const Elf64_Phdr& dynamic = part(PT_DYNAMIC);
        for (std::size_t i = 0; i < dynamic.p_filesz / sizeof(Elf64_Dyn); ++i) {
            auto& one = inFile<Elf64_Dyn>(dynamic.p_offset + i * sizeof(Elf64_Dyn));
            if (one.d_tag == tag) return one;
        }
        throw std::runtime_error("there is no such entry");
    }
    void set(Elf64_Sxword tag, std::uint64_t value) { entry(tag).d_un.d_val = value; }
    /// In its place comes one that the loader does not look at.
    void takeAway(Elf64_Sxword tag) { entry(tag).d_tag = DT_DEBUG; }
    /// What stands some bytes after the address that an entry has.
    template<class T>
    T& after(Elf64_Sxword tag, std::uint64_t offset = 0) {
        return inFile<T>(entry(tag).d_un.d_ptr + offset); // the first segment begins with the file
    }
    Elf64_Rela& relocationOf(std::uint64_t address) {
        for (std::size_t i = 0; i < entry(DT_RELASZ).d_un.d_val / sizeof(Elf64_Rela); ++i)
            if (auto& one = after<Elf64_Rela>(DT_RELA, i * sizeof(Elf64_Rela)); one.r_offset == address) return one;
        throw std::runtime_error("there is no such relocation");
    }

  private:
    template<class T>
    T& inFile(std::uint64_t offset) {
        if (offset > bytes_.size() || sizeof(T) > bytes_.size() - offset) throw std::runtime_error("it is not there");
        return *static_cast<T*>(static_cast<void*>(bytes_.data() + offset));
    }
    Elf64_Shdr& sectionAt(std::size_t number) {
        return inFile<Elf64_Shdr>(header().e_shoff + number * sizeof(Elf64_Shdr));
    }

    std::vector<char> bytes_;
};

/// What is told of libraries that the loader would map, and then end the process.
class ElfFile : public testing::Test {
  protected:
#if !defined(__x86_64__)
    void SetUp() override {
        GTEST_SKIP() << "the libraries are for another machine";
    }
#endif
    using Change = std::function<void(Library&)>;

    [[nodiscard]] std::string faultOf(
        const std::string& name, const Change& change = [](Library&) {}) const {
        Library library(name);
        change(library);
        const auto path = device_.path() / name;
        std::ofstream(path, std::ios::binary)
            .write(library.bytes().data(), static_cast<std::streamsize>(library.bytes().size()));
        return platform::faultOfSharedObject(platform::RegularFile(path));
    }
    [[nodiscard]] std::string damageOf(const std::string& name, const Change& change) const {
        const std::string fault = faultOf(name, change);
        constexpr std::string_view start = "it is damaged: ";
        return fault.starts_with(start) ? fault.substr(start.size()) : "not damaged: " + fault;
    }

    tests::DeviceFolder device_;
};

TEST_F(ElfFile, nothingIsWrongWithWhatLinkersWrite) {
    for (const char* name : {"small.so", "no-sections.so", "begins.so", "lazy.so", "packed.so", "versions.so"})
        EXPECT_EQ(faultOf(name), "") << name;
}

TEST_F(ElfFile, tellsWhatIsNoWholeSharedObject) {
    EXPECT_EQ(platform::faultOfSharedObject(platform::RegularFile(device_.path() / "none")), "it cannot be read");
    EXPECT_EQ(faultOf("cut-at-end.so"), "it is cut short");
    EXPECT_EQ(faultOf("cut-in-headers.so"), "it is cut short");
    EXPECT_EQ(faultOf("no-sections.so", [](Library& one) { one.header().e_phoff = 1U << 20; }), "it is cut short");
    EXPECT_EQ(faultOf("small.so", [](Library& one) { one.part(PT_LOAD, 1).p_filesz = 1U << 20; }), "it is cut short");
    EXPECT_EQ(faultOf("small.so", [](Library& one) { one.header().e_machine = EM_SPARC; }),
              "it is for another machine");
    EXPECT_EQ(faultOf("small.so", [](Library& one) { one.header().e_ident[EI_CLASS] = ELFCLASS32; }),
              "it is for another machine");
    for (const Change& change : {Change([](Library& one) { one.header().e_ident[0] = 0; }),
                                 Change([](Library& one) { one.header().e_type = ET_EXEC; }),
                                 Change([](Library& one) { one.header().e_phentsize = 32; }),
                                 Change([](Library& one) { one.part(PT_DYNAMIC).p_type = PT_NULL; })})
        EXPECT_EQ(faultOf("small.so", change), "it is no shared object");
}

TEST_F(ElfFile, tellsWhichHeadersDoNotFitTogether) {
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.header().e_shentsize = 10; }),
              "its section headers are of no known size");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.part(PT_LOAD, 1).p_vaddr = 0x100; }), "its segments overlap");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.part(PT_LOAD, 1).p_memsz = 1; }), "its segments overlap");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.part(PT_LOAD, 1).p_align = 3; }), "a segment is not aligned");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.part(PT_LOAD, 1).p_vaddr += 8; }),
              "a segment is not aligned");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.part(PT_DYNAMIC).p_vaddr += 16; }),
              "its dynamic section lies outside of its segments");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.part(PT_DYNAMIC).p_filesz = 6 * sizeof(Elf64_Dyn); }),
              "its dynamic section has no end");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.part(PT_LOAD, 1).p_flags = PF_R; }),
              "its dynamic section cannot be written");
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.part(PT_GNU_EH_FRAME).p_vaddr += 4; }),
              "a program header points outside of its segments");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.part(PT_GNU_STACK).p_type = PT_PHDR; }),
              "its program headers are not where they say they are");
}

TEST_F(ElfFile, tellsOfDataForEachThreadThatNoThreadCouldHave) {
    const std::string size = "its data for each thread is of no sensible size";
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.part(PT_TLS).p_align = 3; }), size);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.part(PT_TLS).p_align = 1U << 27; }), size);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.part(PT_TLS).p_memsz = 1U << 27; }), size);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.part(PT_TLS).p_memsz = 3; }), size);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.part(PT_TLS).p_vaddr += 4; }),
              "its data for each thread lies outside of its segments");
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.section(".tdata").sh_size = 5; }),
              "a section of data for each thread is not in that data");
}

TEST_F(ElfFile, tellsOfSectionsThatAreNotInPlace) {
    const std::string reason = "a section is in no segment of its kind";
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.section(".text").sh_addr = 0x1F40; }), reason);
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.section(".text").sh_offset += 1; }), reason);
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.section(".dynamic").sh_addr = 0; }), reason);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.section(".bss").sh_size += 1; }), reason);
}

TEST_F(ElfFile, tellsOfProtectionThatTheCodeWouldRunInto) {
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.part(PT_GNU_RELRO).p_memsz = UINT64_MAX; }),
              "it protects more than there is");
    for (const std::uint64_t size : {0x2000U, 0x10000U}) {
        const auto change = [size](Library& one) {
            one.part(PT_GNU_RELRO).p_vaddr = size == 0x2000 ? 0 : 0x1F40;
            one.part(PT_GNU_RELRO).p_memsz = size;
        };
        EXPECT_EQ(damageOf("small.so", change), "it protects what is no data of its own") << size;
    }
    EXPECT_EQ(faultOf("small.so", [](Library& one) { one.part(PT_GNU_RELRO).p_memsz = 1; }), "") << "no whole page";
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.part(PT_GNU_RELRO).p_memsz += 0x1000; }),
              "it protects data that the code writes to");
    const auto protectAll = [](Library& one) {
        one.header().e_shnum = 0; // or its own data would be complained of
        Elf64_Phdr& part = one.part(PT_GNU_STACK);
        part = one.part(PT_LOAD, 1);
        part.p_type = PT_GNU_RELRO;
        part.p_memsz = 0x2000 - part.p_vaddr;
    };
    EXPECT_EQ(damageOf("lazy.so", protectAll), "it protects its table of calls before that is complete");
    const auto bindAtOnce = [&](Library& one) {
        protectAll(one);
        one.entry(DT_RELACOUNT) = {DT_FLAGS, {DF_BIND_NOW}};
    };
    EXPECT_EQ(faultOf("lazy.so", bindAtOnce), "");
}

TEST_F(ElfFile, tellsOfTablesThatAreNotThereAsAWhole) {
    const std::string incomplete = "a table has an address and no size, or a size alone";
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.takeAway(DT_RELASZ); }), incomplete);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.takeAway(DT_INIT_ARRAY); }), incomplete);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_RELAENT, 23); }),
              "a table's entries are of no known size");
    EXPECT_EQ(damageOf("small.so",
                       [](Library& one) {
                           one.entry(DT_HASH) = {DT_RELAENT, {sizeof(Elf64_Rela)}};
                       }),
              "a table's entries are of no known size");
    const std::string outside = "a table lies outside of its segments";
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_RELA, 1U << 20); }), outside);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_RELASZ, 143); }), outside);
    const std::string calls = "its relocations of calls are of no known kind";
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_PLTREL, DT_REL); }), calls);
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.entry(DT_HASH) = {DT_PLTREL, {DT_RELA}}; }), calls);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_PLTGOT, 0); }),
              "its table of calls cannot be written");
}

TEST_F(ElfFile, tellsOfNamesThatAreNowhere) {
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.set(DT_STRTAB, 1U << 20); }), "its texts lie outside of it");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.set(DT_STRSZ, 9); }), "its texts lie outside of it");
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_NEEDED, 65); }), "a name lies outside of its texts");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.after<Elf64_Sym>(DT_SYMTAB, 24).st_name = 10; }),
              "the name of a symbol lies outside of its texts");
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.set(DT_SYMENT, 16); }), "its symbols are of no known size");
    for (const Change& change : {Change([](Library& one) { one.takeAway(DT_SYMTAB); }),
                                 Change([](Library& one) { one.set(DT_SYMTAB, 1U << 20); })})
        EXPECT_EQ(damageOf("small.so", change), "its symbols lie outside of its segments");
}

TEST_F(ElfFile, tellsOfRelocationsThatGoWrong) {
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_RELACOUNT, 7); }),
              "it counts more relocations than it has");
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_RELACOUNT, 6); }),
              "it counts relocations of another kind");
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.relocationOf(0x1DD0).r_offset = 0x430; }),
              "a relocation changes what is no data of its own");
    EXPECT_EQ(damageOf("packed.so", [](Library& one) { one.after<Elf64_Relr>(DT_RELR) = 0x3B0; }),
              "a packed relocation changes no data");
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_RELASZ, 5 * sizeof(Elf64_Rela)); }),
              "its tables leave out relocations");
    const auto chooseByData = [](Library& one) {
        one.takeAway(DT_RELACOUNT);
        one.relocationOf(0x1DD0) = {0x1DD0, R_X86_64_IRELATIVE, 0x2000};
    };
    EXPECT_EQ(damageOf("begins.so", chooseByData), "a relocation asks what is no code");
    const auto nothing = [](Library& one) { one.after<Elf64_Rela>(DT_JMPREL) = {0, R_X86_64_NONE, 0}; };
    EXPECT_EQ(faultOf("begins.so", nothing), "") << "what is none may change anything";
}

TEST_F(ElfFile, tellsOfHashTablesThatLeadAstray) {
    const std::string outside = "its hash table lies outside of its segments";
    const std::string shape = "its hash table is of no known shape";
    const std::string nowhere = "its hash table leads to no symbol";
    const std::string other = "its hash table is not that of its symbols";
    // Number of buckets, first symbol, words of the filter, a shift; the filter; buckets; chains.
    const auto word = [](std::uint64_t offset, std::uint32_t value) {
        return [=](Library& one) { one.after<std::uint32_t>(DT_GNU_HASH, offset) = value; };
    };
    EXPECT_EQ(damageOf("small.so", [](Library& one) { one.set(DT_GNU_HASH, 1U << 20); }), outside);
    EXPECT_EQ(damageOf("small.so", word(0, 0)), shape);
    EXPECT_EQ(damageOf("small.so", word(8, 0)), shape);
    EXPECT_EQ(damageOf("small.so", word(8, 3)), shape);
    EXPECT_EQ(damageOf("small.so", word(0, 1U << 20)), outside);
    EXPECT_EQ(damageOf("small.so", word(8, 1U << 20)), outside);
    EXPECT_EQ(damageOf("small.so", word(4, 5)), nowhere);
    EXPECT_EQ(damageOf("small.so", word(24, 1U << 20)), outside);
    EXPECT_EQ(damageOf("small.so", word(32, 0xABCDEF01)), other);
    const auto empty = [&](Library& one) {
        word(24, 0)(one);
        word(28, 0)(one);
    };
    EXPECT_EQ(faultOf("small.so", empty), "") << "it finds nothing, and that is all";
    EXPECT_EQ(faultOf("small.so", [](Library& one) { one.takeAway(DT_GNU_HASH); }), "") << "the other one is enough";
    // The older kind: numbers of buckets and of symbols; buckets; chains.
    const auto oldWord = [](std::uint64_t offset, std::uint32_t value) {
        return [=](Library& one) { one.after<std::uint32_t>(DT_HASH, offset) = value; };
    };
    EXPECT_EQ(damageOf("small.so", oldWord(0, 1U << 20)), outside);
    EXPECT_EQ(damageOf("small.so", oldWord(8, 2)), nowhere);
    EXPECT_EQ(damageOf("small.so", oldWord(16, 1)), other) << "a chain without an end";
}

TEST_F(ElfFile, tellsOfVersionsThatAreNotThere) {
    EXPECT_EQ(damageOf("versions.so", [](Library& one) { one.takeAway(DT_VERDEFNUM); }),
              "its versions are not complete");
    EXPECT_EQ(damageOf("versions.so", [](Library& one) { one.takeAway(DT_VERSYM); }), "its versions are not complete");
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.takeAway(DT_VERNEEDNUM); }),
              "its versions are not complete");
    for (const Change& change :
         {Change([](Library& one) { one.after<Elf64_Verneed>(DT_VERNEED).vn_file = 0; }),
          Change([](Library& one) { one.after<Elf64_Verneed>(DT_VERNEED).vn_file = 65; }),
          Change([](Library& one) { one.after<Elf64_Verneed>(DT_VERNEED).vn_next = 1U << 20; }),
          Change([](Library& one) { one.after<Elf64_Vernaux>(DT_VERNEED, 16).vna_name = 65; }),
          Change([](Library& one) { one.after<Elf64_Vernaux>(DT_VERNEED, 16).vna_next = 1U << 20; })})
        EXPECT_EQ(damageOf("begins.so", change), "the versions that it needs are not in order");
    for (const Change& change : {Change([](Library& one) { one.after<Elf64_Verdef>(DT_VERDEF).vd_next = 1U << 20; }),
                                 Change([](Library& one) { one.after<Elf64_Verdef>(DT_VERDEF).vd_aux = 1U << 20; }),
                                 Change([](Library& one) { one.after<Elf64_Verdaux>(DT_VERDEF, 20).vda_name = 38; })})
        EXPECT_EQ(damageOf("versions.so", change), "the versions that it defines are not in order");
    EXPECT_EQ(damageOf("versions.so", [](Library& one) { one.set(DT_VERSYM, 0x2BF); }),
              "the versions of its symbols lie outside of its segments");
    EXPECT_EQ(damageOf("versions.so", [](Library& one) { one.after<Elf64_Versym>(DT_VERSYM, 2) = 9; }),
              "a symbol has an unknown version");
}

TEST_F(ElfFile, tellsOfBeginningsThatAreNoFunctions) {
    const std::string reason = "it begins or ends with what is no function";
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_INIT, 0x2000); }), reason) << "data";
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_INIT, 0x464); }), reason) << "amid a function";
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.relocationOf(0x1DD0).r_addend = 0x2000; }), reason);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.relocationOf(0x1DD0).r_offset = 0x2000; }), reason)
        << "left as it is in the file";
    // The first bit after the mark stands for the word after the one before, which the last function's address is in.
    EXPECT_EQ(damageOf("packed.so", [](Library& one) { one.after<Elf64_Relr>(DT_RELR, 8) = 0b101; }), reason);
    EXPECT_EQ(damageOf("begins.so", [](Library& one) { one.set(DT_INIT_ARRAY, 0x1DD8); }),
              "its table of functions to begin or end with is not where it says");
}

} // namespace
