#include "lists/PluginDiscovery.h"
#include "tests/lists/PluginFolder.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <link.h>
#include <map>
#include <stdexcept>
#include <sys/stat.h>
#include <vector>

namespace {

using lumora::discoverPlugins;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using tests::namesOf;
namespace fs = std::filesystem;

template<class T>
T readAt(const fs::path& file, std::size_t offset) {
    T record{};
    std::ifstream in(file, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(offset));
    in.read(reinterpret_cast<char*>(&record), sizeof record);
    return record;
}

template<class T>
void writeAt(const fs::path& file, std::size_t offset, T record) {
    std::fstream out(file, std::ios::binary | std::ios::in | std::ios::out);
    out.seekp(static_cast<std::streamoff>(offset));
    out.write(reinterpret_cast<const char*>(&record), sizeof record);
}

/// Where the program headers of a type stand in a module.
std::vector<std::size_t> headersOf(const fs::path& module, ElfW(Word) type) {
    const auto header = readAt<ElfW(Ehdr)>(module, 0);
    std::vector<std::size_t> found;
    for (std::size_t at = header.e_phoff; found.size() < header.e_phnum; at += sizeof(ElfW(Phdr)))
        found.push_back(at);
    std::erase_if(found, [&](std::size_t at) { return readAt<ElfW(Phdr)>(module, at).p_type != type; });
    return found;
}

/// Makes a broken bundle of the name.
using Breaking = std::function<void(const tests::PluginFolder& plugins, const std::string& bundle)>;
using Spoiling = std::function<void(const fs::path& file)>;

constexpr const char* kCode = "Code";
constexpr const char* kInfo = "Info.plist";

/// A bundle of which a file is spoilt after it was good.
Breaking spoilt(const char* file, Spoiling spoil) {
    return [file, spoil = std::move(spoil)](const auto& plugins, const auto& bundle) {
        spoil(plugins.add(bundle, "TestPlugin") / file);
    };
}

/// One in which something else stands in the place of the file, or nothing.
Breaking replaced(const char* file, const Spoiling& replace) {
    return spoilt(file, [replace](const fs::path& path) {
        fs::remove(path);
        if (replace) replace(path);
    });
}

Breaking written(const char* file, const std::string& contents) {
    return replaced(file, [contents](const fs::path& path) { tests::PluginFolder::write(path, contents); });
}

Breaking linked(const char* file, const std::string& target) {
    return replaced(file, [target](const fs::path& path) { fs::create_symlink(target, path); });
}

Breaking madePipe(const char* file) {
    return replaced(file, [](const fs::path& path) { ::mkfifo(path.c_str(), 0600); });
}

/// What is left is so much of the part that is mapped.
Breaking cutTo(double share) {
    return spoilt(kCode, [share](const fs::path& code) {
        std::size_t end = 0;
        for (const std::size_t at : headersOf(code, PT_LOAD)) {
            const auto segment = readAt<ElfW(Phdr)>(code, at);
            end = std::max(end, segment.p_offset + segment.p_filesz);
        }
        fs::resize_file(code, static_cast<std::uintmax_t>(static_cast<double>(end) * share));
    });
}

template<class T>
Breaking patched(std::size_t offset, T value) {
    return spoilt(kCode, [offset, value](const fs::path& code) { writeAt(code, offset, value); });
}

template<class T>
Breaking programHeader(ElfW(Word) type, std::size_t offset, T value) {
    return spoilt(kCode, [type, offset, value](const fs::path& code) {
        writeAt(code, headersOf(code, type).at(0) + offset, value);
    });
}

Breaking dynamicEntry(std::int64_t tag, ElfW(Addr) value) {
    return spoilt(kCode, [tag, value](const fs::path& code) {
        const auto dynamic = readAt<ElfW(Phdr)>(code, headersOf(code, PT_DYNAMIC).at(0));
        std::size_t at = dynamic.p_offset;
        for (; readAt<ElfW(Dyn)>(code, at).d_tag != tag; at += sizeof(ElfW(Dyn)))
            if (at >= dynamic.p_offset + dynamic.p_filesz) throw std::runtime_error("no such dynamic entry");
        writeAt(code, at + offsetof(ElfW(Dyn), d_un), value);
    });
}

/// An Info.plist of these entries, with a class named.
Breaking infoOfClass(const std::string& entries) {
    return written(kInfo,
                   "<plist><dict>" + entries + "<key>NSPrincipalClass</key><string>TestPlugin</string></dict></plist>");
}
/// And one with the code named.
Breaking infoOfCode(const std::string& entries) {
    return written(kInfo,
                   "<plist><dict><key>CFBundleExecutable</key><string>Code</string>" + entries + "</dict></plist>");
}

Breaking principalClass(const std::string& name) {
    return [name](const auto& plugins, const auto& bundle) { plugins.add(bundle, "TestPlugin", name); };
}

Breaking module(const std::string& name) {
    return [name](const auto& plugins, const auto& bundle) { plugins.add(bundle, name); };
}

constexpr bool kHas64Bits = sizeof(void*) == 8;
constexpr auto kBeyond = static_cast<ElfW(Off)>(kHas64Bits ? std::uint64_t{1} << 40U : std::uint64_t{3} << 30U);

/// Every way of being broken, by the name that the bundle gets.
const std::vector<std::pair<std::string, Breaking>> breakings = [] {
    std::vector<std::pair<std::string, Breaking>> all{
        {"cut-to-nothing", cutTo(0)},
        {"cut-in-header", cutTo(0.002)},
        {"cut-in-half", cutTo(0.5)},
        {"cut-at-end", cutTo(0.9999)},
        {"text", written(kCode, "#!/bin/sh\necho not a library\n")},
        {"magic-alone", written(kCode, "\177ELF")},
        {"zeroes", written(kCode, std::string(8192, '\0'))},
        {"other-machine", patched<ElfW(Half)>(offsetof(ElfW(Ehdr), e_machine), EM_S390)},
        {"other-width", patched<unsigned char>(EI_CLASS, kHas64Bits ? ELFCLASS32 : ELFCLASS64)},
        {"other-byte-order", patched<unsigned char>(EI_DATA, ELFDATA2MSB)},
        {"object-file", patched<ElfW(Half)>(offsetof(ElfW(Ehdr), e_type), ET_REL)},
        {"no-segments", patched<ElfW(Half)>(offsetof(ElfW(Ehdr), e_phnum), 0)},
        {"segments-beyond", patched(offsetof(ElfW(Ehdr), e_phoff), kBeyond)},
        {"load-beyond", programHeader(PT_LOAD, offsetof(ElfW(Phdr), p_filesz), kBeyond)},
        {"load-elsewhere", programHeader(PT_LOAD, offsetof(ElfW(Phdr), p_vaddr), kBeyond)},
        {"dynamic-elsewhere", programHeader(PT_DYNAMIC, offsetof(ElfW(Phdr), p_vaddr), kBeyond)},
        {"dynamic-missing", programHeader<ElfW(Word)>(PT_DYNAMIC, offsetof(ElfW(Phdr), p_type), PT_NULL)},
        {"texts-beyond", dynamicEntry(DT_STRTAB, kBeyond)},
        {"needed-beyond", dynamicEntry(DT_NEEDED, kBeyond)},
        {"symbols-beyond", dynamicEntry(DT_SYMTAB, kBeyond)},
        {"relocations-beyond", dynamicEntry(kHas64Bits ? DT_RELASZ : DT_RELSZ, kBeyond)},
        {"pipe", madePipe(kCode)},
        {"folder", replaced(kCode, [](const fs::path& code) { fs::create_directory(code); })},
        {"device", linked(kCode, "/dev/zero")},
        {"unreadable", linked(kCode, "/proc/sys/vm/drop_caches")},
        {"loop", linked(kCode, "Code")},
        {"dangling", linked(kCode, "nothing")},
        {"no-code", replaced(kCode, nullptr)},
        {"no-info", replaced(kInfo, nullptr)},
        {"pipe-as-info", madePipe(kInfo)},
        {"endless-info", linked(kInfo, "/dev/zero")},
        {"garbage-info", written(kInfo, "bplist00\xFF\xFF\xFF")},
        {"list-info", written(kInfo, "<plist><array><string>Code</string></array></plist>")},
        {"number-as-code", infoOfClass("<key>CFBundleExecutable</key><integer>1</integer>")},
        {"path-as-code", infoOfClass("<key>CFBundleExecutable</key><string>./Code</string>")},
        {"parent-as-code", infoOfClass("<key>CFBundleExecutable</key><string>..</string>")},
        {"no-code-named", infoOfClass("")},
        {"no-class-named", infoOfCode("")},
        {"list-as-class", infoOfCode("<key>NSPrincipalClass</key><array/>")},
        {"class-with-space", principalClass("Test Plugin")},
        {"class-with-path", principalClass("../TestPlugin")},
        {"class-with-digit", principalClass("1TestPlugin")},
        {"class-missing", principalClass("NoSuchClass")},
        {"class-version", principalClass("OtherVersion")},
        {"class-null", principalClass("NullClass")},
        {"missing-symbol", module("MissingSymbol")},
        {"missing-library", module("MissingLibrary")},
        {"borrowed-table", module("BorrowedTable")},
        {"plain-file", [](const auto& plugins, const auto& bundle) { plugins.write(plugins.path() / bundle, "file"); }},
        {"bundle-loop",
         [](const auto& plugins, const auto& bundle) { fs::create_symlink(bundle, plugins.path() / bundle); }},
    };
    for (const char* behaviour :
         {"null-instance", "throwing-instance", "other-instance-version", "no-identifier", "no-name", "no-appID",
          "null-identifier", "null-name", "null-appID", "empty-identifier", "empty-name", "empty-appID", "foreign-name",
          "throwing-identifier", "throwing-name", "throwing-appID"}) // by which the module itself goes
        all.emplace_back(behaviour, module("TestPlugin"));
    return all;
}();

struct BrokenPlugins : testing::Test {
    tests::PluginFolder plugins;
};

TEST_F(BrokenPlugins, AreLeftOutAmongAsManyGoodOnes) {
    std::vector<std::string> good;
    for (std::size_t i = 0; i < 100; ++i) {
        good.push_back("good-" + std::to_string(i));
        plugins.add(good.back() + ".bundle", i % 4 == 0 ? "PagePlugin" : "TestPlugin");
        const auto& [kind, breakOne] = breakings[i % breakings.size()];
        breakOne(plugins, kind + "-" + std::to_string(i) + ".bundle");
    }
    std::ranges::sort(good);
    ASSERT_THAT(namesOf(discoverPlugins(false)), ElementsAreArray(good)) << "in listing order";
    const auto descriptors = tests::descriptorCount();
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAreArray(good)) << "a second time";
    EXPECT_EQ(discoverPlugins(true).size(), 25U);
    EXPECT_EQ(tests::descriptorCount(), descriptors);
}

TEST_F(BrokenPlugins, LeaveNoDescriptorOpen) {
    for (const auto& [kind, breakOne] : breakings)
        breakOne(plugins, kind + "-1.bundle");
    const auto before = tests::descriptorCount();
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    EXPECT_EQ(tests::descriptorCount(), before);
}

TEST_F(BrokenPlugins, AreSkippedForReasonsThatAreTold) {
    std::vector<fs::path> bundles;
    for (const auto& [kind, breakOne] : breakings) {
        breakOne(plugins, kind + "-1.bundle");
        bundles.push_back(plugins.path() / (kind + "-1.bundle"));
    }
    const auto probed = platform::probe(platform::ForeignCode::plugin, bundles, platform::ProbeReport::answers, {});
    std::map<std::string, std::string> reason;
    for (std::size_t i = 0; i < breakings.size(); ++i) {
        const platform::Value skipped = probed[i].told["skipped"];
        std::string& why = reason[breakings[i].first] = skipped.text() ? *skipped.text() : probed[i].why;
        EXPECT_NE(why, "") << breakings[i].first;
    }
    EXPECT_THAT(reason["cut-at-end"], HasSubstr("cut short"));
    EXPECT_THAT(reason["text"], HasSubstr("file too short"));
    EXPECT_THAT(reason["texts-beyond"],
                testing::AnyOf("it crashes: Segmentation fault", StartsWith("it ends the process")))
        << "the latter under sanitizers";
    EXPECT_THAT(reason["pipe"], HasSubstr("cannot be read"));
    for (const char* kind : {"no-info", "garbage-info", "path-as-code"})
        EXPECT_THAT(reason[kind], HasSubstr("Info.plist")) << kind;
    EXPECT_THAT(reason["borrowed-table"], HasSubstr("exports no table")) << "the module beneath does, not its own";
    EXPECT_THAT(reason["missing-symbol"], HasSubstr("test_plugin_missing"));
    EXPECT_THAT(reason["missing-library"], HasSubstr("libtest_plugin_missing"));
    EXPECT_THAT(reason["class-missing"], HasSubstr("NSPrincipalClass"));
    EXPECT_THAT(reason["class-version"], HasSubstr("version"));
    EXPECT_THAT(reason["no-name"], HasSubstr("does not answer name"));
    EXPECT_THAT(reason["null-name"], HasSubstr("gives no name"));
    EXPECT_THAT(reason["empty-appID"], HasSubstr("empty appID"));
    EXPECT_THAT(reason["plain-file"], HasSubstr("no folder"));
}

} // namespace
