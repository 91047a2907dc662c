#include "lists/PluginDiscovery.h"

#include <lumora/KitTag.h>

#include "platform/foundation/NSBundle.h"
#include "tests/lists/PluginFolder.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <cstddef>
#include <dlfcn.h>
#include <elf.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using lumora::discoverPlugins;
using lumora::PluginExamination;
using platform::NSBundle;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using tests::namesOf;
namespace fs = std::filesystem;

/// Why bundles cannot be used, as whoever asks is told; empty for one that can be.
std::vector<std::string> reasonsOf(const std::vector<fs::path>& bundles) {
    std::vector<std::string> reasons;
    for (const auto& probed :
         platform::probe(platform::ForeignCode::plugin, bundles, platform::ProbeReport::answers, {})) {
        const platform::Value skipped = probed.told["skipped"];
        reasons.push_back(skipped.text() ? std::string(*skipped.text()) : probed.why);
    }
    return reasons;
}

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

/// Where the program header of a type stands in a module.
std::size_t headerOf(const fs::path& module, Elf64_Word type) {
    const auto header = readAt<Elf64_Ehdr>(module, 0);
    for (std::size_t i = 0; i < header.e_phnum; ++i)
        if (const std::size_t at = header.e_phoff + i * sizeof(Elf64_Phdr);
            readAt<Elf64_Phdr>(module, at).p_type == type)
            return at;
    throw std::runtime_error("no such program header");
}

/// Where a dynamic entry stands in a module.
std::size_t entryOf(const fs::path& module, Elf64_Sxword tag) {
    const auto dynamic = readAt<Elf64_Phdr>(module, headerOf(module, PT_DYNAMIC));
    for (std::size_t at = dynamic.p_offset; at < dynamic.p_offset + dynamic.p_filesz; at += sizeof(Elf64_Dyn))
        if (readAt<Elf64_Dyn>(module, at).d_tag == tag) return at;
    throw std::runtime_error("no such dynamic entry");
}

/// Makes a broken bundle of the name.
using Breaking = std::function<void(const tests::PluginFolder& plugins, const std::string& bundle)>;

/// One whose module or Info.plist is spoilt after it was good.
Breaking spoiling(std::function<void(const fs::path& bundle)> spoil) {
    return [spoil = std::move(spoil)](const auto& plugins, const auto& bundle) {
        spoil(plugins.add(bundle, "TestPlugin"));
    };
}

Breaking codeReplaced(std::function<void(const fs::path& code)> replace) {
    return spoiling([replace = std::move(replace)](const fs::path& bundle) {
        fs::remove(bundle / "Code");
        replace(bundle / "Code");
    });
}

Breaking codeAs(const std::string& contents) {
    return codeReplaced([contents](const fs::path& code) { tests::PluginFolder::write(code, contents); });
}

/// Where the part of a module ends that is mapped.
std::size_t endOfSegments(const fs::path& module) {
    const auto header = readAt<Elf64_Ehdr>(module, 0);
    std::size_t end = 0;
    for (std::size_t i = 0; i < header.e_phnum; ++i)
        if (const auto segment = readAt<Elf64_Phdr>(module, header.e_phoff + i * sizeof(Elf64_Phdr));
            segment.p_type == PT_LOAD)
            end = std::max(end, segment.p_offset + segment.p_filesz);
    return end;
}

/// What is left is so much of the part that is mapped.
Breaking cutTo(double share) {
    return spoiling([share](const fs::path& bundle) {
        const auto size = static_cast<double>(endOfSegments(bundle / "Code"));
        fs::resize_file(bundle / "Code", static_cast<std::uintmax_t>(size * share));
    });
}

template<class T>
Breaking patched(std::size_t offset, T value) {
    return spoiling([offset, value](const fs::path& bundle) { writeAt(bundle / "Code", offset, value); });
}

template<class T>
Breaking programHeader(Elf64_Word type, std::size_t offset, T value) {
    return spoiling([type, offset, value](const fs::path& bundle) {
        writeAt(bundle / "Code", headerOf(bundle / "Code", type) + offset, value);
    });
}

Breaking dynamicEntry(Elf64_Sxword tag, std::uint64_t value) {
    return spoiling([tag, value](const fs::path& bundle) {
        const std::size_t at = entryOf(bundle / "Code", tag);
        writeAt(bundle / "Code", at + offsetof(Elf64_Dyn, d_un), value);
    });
}

Breaking infoAs(const std::string& contents) {
    return spoiling(
        [contents](const fs::path& bundle) { tests::PluginFolder::write(bundle / "Info.plist", contents); });
}

Breaking infoEntries(const std::string& entries) {
    return infoAs("<plist><dict>" + entries + "</dict></plist>");
}

Breaking principalClass(const std::string& name) {
    return [name](const auto& plugins, const auto& bundle) { plugins.add(bundle, "TestPlugin", name); };
}

Breaking module(const std::string& name) {
    return [name](const auto& plugins, const auto& bundle) { plugins.add(bundle, name); };
}

constexpr std::uint64_t kBeyond = std::uint64_t{1} << 40;

/// Every way of being broken, by the name that the bundle gets; the module itself behaves as some of them say.
const std::vector<std::pair<std::string, Breaking>> breakings{
    {"cut-to-nothing", cutTo(0)},
    {"cut-in-header", cutTo(0.002)},
    {"cut-in-half", cutTo(0.5)},
    {"cut-at-end", cutTo(0.9999)},
    {"text", codeAs("#!/bin/sh\necho not a library\n")},
    {"magic-alone", codeAs("\177ELF")},
    {"zeroes", codeAs(std::string(8192, '\0'))},
    {"other-machine", patched<Elf64_Half>(offsetof(Elf64_Ehdr, e_machine), EM_S390)},
    {"other-width", patched<unsigned char>(EI_CLASS, ELFCLASS32)},
    {"other-byte-order", patched<unsigned char>(EI_DATA, ELFDATA2MSB)},
    {"object-file", patched<Elf64_Half>(offsetof(Elf64_Ehdr, e_type), ET_REL)},
    {"no-segments", patched<Elf64_Half>(offsetof(Elf64_Ehdr, e_phnum), 0)},
    {"segments-beyond", patched(offsetof(Elf64_Ehdr, e_phoff), kBeyond)},
    {"load-beyond", programHeader(PT_LOAD, offsetof(Elf64_Phdr, p_filesz), kBeyond)},
    {"load-elsewhere", programHeader(PT_LOAD, offsetof(Elf64_Phdr, p_vaddr), kBeyond)},
    {"dynamic-elsewhere", programHeader(PT_DYNAMIC, offsetof(Elf64_Phdr, p_vaddr), kBeyond)},
    {"dynamic-missing", programHeader<Elf64_Word>(PT_DYNAMIC, offsetof(Elf64_Phdr, p_type), PT_NULL)},
    {"texts-beyond", dynamicEntry(DT_STRTAB, kBeyond)},
    {"needed-beyond", dynamicEntry(DT_NEEDED, kBeyond)},
    {"symbols-beyond", dynamicEntry(DT_SYMTAB, kBeyond)},
    {"relocations-beyond", dynamicEntry(DT_RELASZ, kBeyond)},
    {"pipe", codeReplaced([](const fs::path& code) { ::mkfifo(code.c_str(), 0600); })},
    {"folder", codeReplaced([](const fs::path& code) { fs::create_directory(code); })},
    {"device", codeReplaced([](const fs::path& code) { fs::create_symlink("/dev/zero", code); })},
    {"unreadable", codeReplaced([](const fs::path& code) { fs::create_symlink("/proc/sys/vm/drop_caches", code); })},
    {"loop", codeReplaced([](const fs::path& code) { fs::create_symlink("Code", code); })},
    {"dangling", codeReplaced([](const fs::path& code) { fs::create_symlink("nothing", code); })},
    {"no-code", codeReplaced([](const fs::path& /*code*/) {})},
    {"no-info", spoiling([](const fs::path& bundle) { fs::remove(bundle / "Info.plist"); })},
    {"pipe-as-info", spoiling([](const fs::path& bundle) {
         fs::remove(bundle / "Info.plist");
         ::mkfifo((bundle / "Info.plist").c_str(), 0600);
     })},
    {"endless-info", spoiling([](const fs::path& bundle) {
         fs::remove(bundle / "Info.plist");
         fs::create_symlink("/dev/zero", bundle / "Info.plist");
     })},
    {"garbage-info", infoAs("bplist00\xFF\xFF\xFF")},
    {"list-info", infoAs("<plist><array><string>Code</string></array></plist>")},
    {"number-as-code", infoEntries("<key>CFBundleExecutable</key><integer>1</integer>"
                                   "<key>NSPrincipalClass</key><string>TestPlugin</string>")},
    {"path-as-code", infoEntries("<key>CFBundleExecutable</key><string>./Code</string>"
                                 "<key>NSPrincipalClass</key><string>TestPlugin</string>")},
    {"parent-as-code", infoEntries("<key>CFBundleExecutable</key><string>..</string>"
                                   "<key>NSPrincipalClass</key><string>TestPlugin</string>")},
    {"no-code-named", infoEntries("<key>NSPrincipalClass</key><string>TestPlugin</string>")},
    {"no-class-named", infoEntries("<key>CFBundleExecutable</key><string>Code</string>")},
    {"list-as-class", infoEntries("<key>CFBundleExecutable</key><string>Code</string>"
                                  "<key>NSPrincipalClass</key><array/>")},
    {"class-with-space", principalClass("Test Plugin")},
    {"class-with-path", principalClass("../TestPlugin")},
    {"class-with-digit", principalClass("1TestPlugin")},
    {"class-missing", principalClass("NoSuchClass")},
    {"class-version", principalClass("OtherVersion")},
    {"class-null", principalClass("NullClass")},
    {"missing-symbol", module("MissingSymbol")},
    {"missing-library", module("MissingLibrary")},
    {"null-instance", module("TestPlugin")},
    {"throwing-instance", module("TestPlugin")},
    {"other-instance-version", module("TestPlugin")},
    {"no-identifier", module("TestPlugin")},
    {"no-name", module("TestPlugin")},
    {"no-appID", module("TestPlugin")},
    {"null-identifier", module("TestPlugin")},
    {"null-name", module("TestPlugin")},
    {"null-appID", module("TestPlugin")},
    {"empty-identifier", module("TestPlugin")},
    {"empty-name", module("TestPlugin")},
    {"empty-appID", module("TestPlugin")},
    {"foreign-name", module("TestPlugin")},
    {"throwing-identifier", module("TestPlugin")},
    {"throwing-name", module("TestPlugin")},
    {"throwing-appID", module("TestPlugin")},
    {"plain-file", [](const auto& plugins, const auto& bundle) { plugins.write(plugins.path() / bundle, "file"); }},
    {"bundle-loop",
     [](const auto& plugins, const auto& bundle) { fs::create_symlink(bundle, plugins.path() / bundle); }},
};

/// The names of good bundles, which are found in this order.
std::vector<std::string> listedGood(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().stem().string().starts_with("good-")) names.push_back(entry.path().stem().string());
    std::ranges::sort(names);
    return names;
}

/// What a loaded copy of the test plug-in was asked so far.
std::string askedOf(const fs::path& module) {
    void* handle = ::dlopen(module.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!handle) return "not loaded";
    const auto asked = reinterpret_cast<const char* (*)()>(::dlsym(handle, "testPluginAsked"));
    return asked ? asked() : "no test plug-in";
}

struct PluginDiscovery : testing::Test {
    tests::PluginFolder plugins;
};

TEST_F(PluginDiscovery, FindsExactlyTheGoodOnesAmongAsManyBroken) {
    for (std::size_t i = 0; i < 100; ++i) {
        const std::string number = "-" + std::to_string(i) + ".bundle";
        plugins.add("good" + number, i % 4 == 0 ? "PagePlugin" : "TestPlugin");
        const auto& [kind, breakOne] = breakings[i % breakings.size()];
        breakOne(plugins, kind + number);
    }
    const auto good = listedGood(plugins.path());
    ASSERT_EQ(good.size(), 100U);

    ASSERT_THAT(namesOf(discoverPlugins(false)), ElementsAreArray(good)) << "in listing order";
    const auto descriptors = tests::descriptorCount();
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAreArray(good)) << "a second time";
    EXPECT_EQ(discoverPlugins(true).size(), 25U);
    EXPECT_EQ(tests::descriptorCount(), descriptors);
}

TEST_F(PluginDiscovery, LeavesNoDescriptorOpenOverBrokenBundles) {
    for (const auto& [kind, breakOne] : breakings)
        breakOne(plugins, kind + "-1.bundle");
    const auto before = tests::descriptorCount();
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    EXPECT_EQ(tests::descriptorCount(), before);
}

TEST_F(PluginDiscovery, SaysForEachBrokenBundleWhatIsWrong) {
    std::vector<fs::path> bundles;
    for (const auto& [kind, breakOne] : breakings) {
        breakOne(plugins, kind + "-1.bundle");
        bundles.push_back(plugins.path() / (kind + "-1.bundle"));
    }
    const std::vector<std::string> reasons = reasonsOf(bundles);
    std::map<std::string, std::string> reason;
    for (std::size_t i = 0; i < breakings.size(); ++i) {
        EXPECT_NE(reasons[i], "") << breakings[i].first;
        reason[breakings[i].first] = reasons[i];
    }
    EXPECT_THAT(reason["cut-at-end"], HasSubstr("cut short"));
    EXPECT_THAT(reason["text"], HasSubstr("file too short"));
    EXPECT_THAT(reason["texts-beyond"],
                testing::AnyOf("it crashes: Segmentation fault", StartsWith("it ends the process")))
        << "the latter under sanitizers";
    EXPECT_THAT(reason["pipe"], HasSubstr("cannot be read"));
    EXPECT_THAT(reason["garbage-info"], HasSubstr("Info.plist"));
    EXPECT_THAT(reason["missing-symbol"], HasSubstr("test_plugin_missing"));
    EXPECT_THAT(reason["missing-library"], HasSubstr("libtest_plugin_missing"));
    EXPECT_THAT(reason["class-missing"], HasSubstr("NSPrincipalClass"));
    EXPECT_THAT(reason["class-version"], HasSubstr("version"));
    EXPECT_THAT(reason["no-name"], HasSubstr("does not answer name"));
    EXPECT_THAT(reason["null-name"], HasSubstr("gives no name"));
    EXPECT_THAT(reason["empty-appID"], HasSubstr("empty appID"));
    EXPECT_THAT(reason["plain-file"], HasSubstr("no folder"));
}

TEST_F(PluginDiscovery, AsksEachTextTwiceAndForThePageOnlyWhenThatMatters) {
    plugins.add("good-1.bundle", "TestPlugin");
    const std::string texts = "sharedInstance identifier identifier name name appID appID ";
    EXPECT_EQ(discoverPlugins(false).size(), 1U);
    EXPECT_EQ(askedOf(plugins.module("good-1.bundle")), texts);
    EXPECT_EQ(discoverPlugins(true).size(), 0U);
    EXPECT_EQ(askedOf(plugins.module("good-1.bundle")), texts + texts + "settingsController ");
}

TEST_F(PluginDiscovery, StopsAskingAtTheFirstTextThatIsMissing) {
    plugins.add("null-identifier-1.bundle", "TestPlugin");
    plugins.add("no-appID-1.bundle", "TestPlugin");
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    EXPECT_EQ(askedOf(plugins.module("null-identifier-1.bundle")), "sharedInstance identifier ");
    EXPECT_EQ(askedOf(plugins.module("no-appID-1.bundle")), "sharedInstance ") << "all three must be answered first";
}

TEST_F(PluginDiscovery, KeepsAPlugInThatAnswersNilOnlyTheSecondTime) {
    plugins.add("second-null-appID-1.bundle", "TestPlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 1U) << "nil is not the empty text";
}

TEST_F(PluginDiscovery, LooksAtDirectEntriesWithTheExactExtensionOnly) {
    plugins.add("Foo.bundle", "TestPlugin");
    plugins.add("Foo.Bundle", "TestPlugin");
    plugins.add("Foo.bundles", "TestPlugin");
    plugins.add("bundle", "TestPlugin");
    plugins.add(".bundle", "TestPlugin");
    plugins.add("deeper/Bar.bundle", "TestPlugin");
    plugins.write(plugins.path() / "README", "not a bundle");
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("Foo"));
}

TEST_F(PluginDiscovery, FindsNothingInAFolderThatIsEmptyOrMissingOrNone) {
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    fs::remove(plugins.path());
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    plugins.write(plugins.path(), "file");
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
}

TEST_F(PluginDiscovery, ScansAnewAtEachCall) {
    plugins.add("one-1.bundle", "TestPlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 1U);
    plugins.add("two-2.bundle", "TestPlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 2U);
    fs::remove_all(plugins.path() / "one-1.bundle");
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("two-2"));
}

TEST_F(PluginDiscovery, KeepsPlugInsOfEqualIdentifiers) {
    plugins.add("one.bundle", "PagePlugin");
    plugins.add("two.bundle", "PagePlugin");
    const auto found = discoverPlugins(true);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].identifier(), found[1].identifier());
}

TEST_F(PluginDiscovery, TakesAPlugInWithoutAUsablePageAsOneWithoutSettings) {
    for (const char* kind : {"no-page", "good", "other-tag", "null-tag", "null-page", "throwing-page"})
        plugins.add(std::string(kind) + "-1.bundle", "TestPlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 6U);
    EXPECT_THAT(discoverPlugins(true), IsEmpty());
    const PluginExamination examination(NSBundle::bundleWithPath(plugins.path() / "other-tag-1.bundle"));
    const auto page = examination.plugin().value().settingsController();
    ASSERT_FALSE(page);
    EXPECT_THAT(page.error(), HasSubstr("made with kit 0, another compiler"));
    EXPECT_THAT(page.error(), HasSubstr(LUMORA_KIT_TAG));
}

TEST_F(PluginDiscovery, DoesNotTakeATableFromALibraryThatThePlugInStandsOn) {
    // The module beneath exports the table, the bundle's own does not.
    plugins.add("borrowed-1.bundle", "BorrowedTable");
    EXPECT_THAT(reasonsOf({plugins.path() / "borrowed-1.bundle"}).front(), HasSubstr("exports no table"));
}

TEST_F(PluginDiscovery, KeepsCodeAndObjectsAfterTheBundleWasUnloaded) {
    const auto bundle = NSBundle::bundleWithPath(plugins.add("good-1.bundle", "TestPlugin"));
    EXPECT_EQ(bundle->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL), nullptr) << "not before it is loaded";
    EXPECT_FALSE(bundle->unload());
    ASSERT_TRUE(bundle->load());
    const void* table = bundle->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL);
    ASSERT_NE(table, nullptr);
    EXPECT_TRUE(bundle->unload());
    EXPECT_FALSE(bundle->unload());
    EXPECT_EQ(bundle->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL), nullptr);
    const auto* object = static_cast<const LumoraPrincipalClass*>(table)->sharedInstance();
    EXPECT_STREQ(object->identifier(), "test.good-1");
    ASSERT_TRUE(bundle->load());
    EXPECT_EQ(bundle->principalClassTable(LUMORA_PRINCIPAL_CLASS_SYMBOL), table);
}

TEST(KitTag, NamesKitCompilerAndStandardLibrary) {
    EXPECT_THAT(std::string(LUMORA_KIT_TAG),
                testing::MatchesRegex("kit [0-9]+, (gcc|clang) [0-9]+, lib(std)?c\\+\\+ .*[0-9a-z]+"));
}

} // namespace
