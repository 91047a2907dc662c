#include "lists/PluginDiscovery.h"

#include <lumora/KitTag.h>

#include "platform/foundation/NSBundle.h"
#include "tests/lists/PluginFolder.h"
#include "tests/support/Waiting.h"

#include <cstddef>
#include <dlfcn.h>
#include <elf.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using lumora::discoverPlugins;
using lumora::examine;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
namespace fs = std::filesystem;

std::vector<std::string> namesOf(const std::vector<lumora::Plugin>& plugins) {
    std::vector<std::string> names;
    names.reserve(plugins.size());
    for (const lumora::Plugin& plugin : plugins)
        names.push_back(plugin.name().value_or("nil"));
    return names;
}

std::string reasonOf(const fs::path& bundle) {
    const auto plugin = examine(bundle);
    return plugin ? "" : plugin.error();
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

std::string readAll(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
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

Breaking cutTo(double share) {
    return spoiling([share](const fs::path& bundle) {
        const auto size = static_cast<double>(fs::file_size(bundle / "Code"));
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
    {"cut-at-end", cutTo(0.99)},
    {"text", codeAs("#!/bin/sh\necho not a library\n")},
    {"magic-alone", codeAs("\177ELF")},
    {"zeroes", codeAs(std::string(8192, '\0'))},
    {"other-machine", patched<Elf64_Half>(offsetof(Elf64_Ehdr, e_machine), EM_S390)},
    {"other-width", patched<unsigned char>(EI_CLASS, ELFCLASS32)},
    {"other-byte-order", patched<unsigned char>(EI_DATA, ELFDATA2MSB)},
    {"object-file", patched<Elf64_Half>(offsetof(Elf64_Ehdr, e_type), ET_REL)},
    {"no-segments", patched<Elf64_Half>(offsetof(Elf64_Ehdr, e_phnum), 0)},
    {"segments-beyond", patched(offsetof(Elf64_Ehdr, e_phoff), kBeyond)},
    {"sections-beyond", patched(offsetof(Elf64_Ehdr, e_shoff), kBeyond)},
    {"load-beyond", programHeader(PT_LOAD, offsetof(Elf64_Phdr, p_filesz), kBeyond)},
    {"load-elsewhere", programHeader(PT_LOAD, offsetof(Elf64_Phdr, p_vaddr), kBeyond)},
    {"load-wrapping", programHeader(PT_LOAD, offsetof(Elf64_Phdr, p_memsz), ~std::uint64_t{0})},
    {"dynamic-beyond", programHeader(PT_DYNAMIC, offsetof(Elf64_Phdr, p_offset), kBeyond)},
    {"dynamic-elsewhere", programHeader(PT_DYNAMIC, offsetof(Elf64_Phdr, p_vaddr), kBeyond)},
    {"dynamic-missing", programHeader<Elf64_Word>(PT_DYNAMIC, offsetof(Elf64_Phdr, p_type), PT_NULL)},
    {"dynamic-without-end", programHeader<std::uint64_t>(PT_DYNAMIC, offsetof(Elf64_Phdr, p_filesz), 32)},
    {"texts-beyond", dynamicEntry(DT_STRTAB, kBeyond)},
    {"texts-too-long", dynamicEntry(DT_STRSZ, kBeyond)},
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

/// One byte of a module that is not what it was.
struct Change {
    std::size_t offset;
    char value;
};

/// A few changes of each byte of the ELF header, the program headers and the dynamic section.
std::vector<Change> changesOfHeaders(const fs::path& module) {
    const auto header = readAt<Elf64_Ehdr>(module, 0);
    const auto dynamic = readAt<Elf64_Phdr>(module, headerOf(module, PT_DYNAMIC));
    std::vector<Change> changes;
    for (const auto& [from, size] :
         {std::pair<std::size_t, std::size_t>(0, sizeof header),
          std::pair<std::size_t, std::size_t>(header.e_phoff, header.e_phnum * sizeof(Elf64_Phdr)),
          std::pair<std::size_t, std::size_t>(dynamic.p_offset, dynamic.p_filesz)})
        for (std::size_t offset = from; offset < from + size; ++offset) {
            const auto was = readAt<unsigned char>(module, offset);
            for (const int value : std::set<int>{0, 0xFF, was ^ 1, was ^ 0x80})
                if (value != was) changes.push_back({offset, static_cast<char>(value)});
        }
    return changes;
}

/// Counts what a child did, and is read when the child is dead.
class SharedCount {
  public:
    SharedCount()
        : count_(static_cast<std::size_t*>(
              ::mmap(nullptr, sizeof *count_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}
    SharedCount(const SharedCount&) = delete;
    SharedCount& operator=(const SharedCount&) = delete;
    ~SharedCount() { ::munmap(count_, sizeof *count_); }
    std::size_t& operator*() const { return *count_; }

  private:
    std::size_t* count_;
};

/// Examines the bundle once with each change, in children; what did not survive that.
std::vector<Change> deadlyOnes(const std::vector<Change>& changes, const fs::path& bundle) {
    const auto good = readAll(bundle / "Code");
    std::vector<Change> deadly;
    const SharedCount next;
    while (*next < changes.size()) {
        const pid_t child = ::fork();
        if (child == 0) {
            const rlimit none{0, 0}; // no core files of deaths that are counted
            ::setrlimit(RLIMIT_CORE, &none);
            // Loaded code stays, so each child takes a few hundred only.
            for (const std::size_t end = std::min(*next + 300, changes.size()); *next < end; ++*next) {
                std::string spoilt = good;
                spoilt[changes[*next].offset] = changes[*next].value;
                // A file of its own each time: the loader knows one that it has loaded, and maps it.
                fs::remove(bundle / "Code");
                tests::PluginFolder::write(bundle / "Code", spoilt);
                if (const auto plugin = examine(bundle)) std::ignore = plugin.value().settingsController();
            }
            ::_exit(0);
        }
        int status = 0;
        if (child < 0 || ::waitpid(child, &status, 0) != child) throw std::runtime_error("no child");
        if (status == 0) continue;
        deadly.push_back(changes.at(*next));
        ++*next;
    }
    return deadly;
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

TEST_F(PluginDiscovery, SurvivesEveryChangedByteOfAModulesHeaders) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizers follow every loaded copy, which takes minutes";
#endif
    const fs::path bundle = plugins.add("good-1.bundle", "TestPlugin");
    const auto changes = changesOfHeaders(bundle / "Code");
    ASSERT_GT(changes.size(), 2000U);
    std::vector<std::string> deadly;
    for (const auto& [offset, value] : deadlyOnes(changes, bundle))
        deadly.push_back(std::to_string(offset) + " = " + std::to_string(static_cast<unsigned char>(value)));
    EXPECT_THAT(deadly, IsEmpty()) << "of " << changes.size() << " changes";
}

TEST_F(PluginDiscovery, SaysForEachBrokenBundleWhatIsWrong) {
    for (const auto& [kind, breakOne] : breakings) {
        breakOne(plugins, kind + "-1.bundle");
        EXPECT_NE(reasonOf(plugins.path() / (kind + "-1.bundle")), "") << kind;
    }
    const auto reason = [&](const std::string& kind) { return reasonOf(plugins.path() / (kind + "-1.bundle")); };
    EXPECT_THAT(reason("cut-at-end"), HasSubstr("cut short"));
    EXPECT_THAT(reason("other-machine"), HasSubstr("another machine"));
    EXPECT_THAT(reason("text"), HasSubstr("no shared object"));
    EXPECT_THAT(reason("texts-beyond"), HasSubstr("damaged"));
    EXPECT_THAT(reason("pipe"), HasSubstr("cannot be read"));
    EXPECT_THAT(reason("garbage-info"), HasSubstr("Info.plist"));
    EXPECT_THAT(reason("missing-symbol"), HasSubstr("test_plugin_missing"));
    EXPECT_THAT(reason("missing-library"), HasSubstr("libtest_plugin_missing"));
    EXPECT_THAT(reason("class-missing"), HasSubstr("NSPrincipalClass"));
    EXPECT_THAT(reason("class-version"), HasSubstr("version"));
    EXPECT_THAT(reason("no-name"), HasSubstr("does not answer name"));
    EXPECT_THAT(reason("null-name"), HasSubstr("gives no name"));
    EXPECT_THAT(reason("empty-appID"), HasSubstr("empty appID"));
    EXPECT_THAT(reason("plain-file"), HasSubstr("no folder"));
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
    const auto page = examine(plugins.path() / "other-tag-1.bundle").value().settingsController();
    ASSERT_FALSE(page);
    EXPECT_THAT(page.error(), HasSubstr("made with kit 0, another compiler"));
    EXPECT_THAT(page.error(), HasSubstr(LUMORA_KIT_TAG));
}

TEST_F(PluginDiscovery, DoesNotTakeATableFromALibraryThatThePlugInStandsOn) {
    // The module beneath exports the table, the bundle's own does not.
    plugins.add("borrowed-1.bundle", "BorrowedTable");
    EXPECT_THAT(reasonOf(plugins.path() / "borrowed-1.bundle"), HasSubstr("exports no table"));
}

TEST_F(PluginDiscovery, KeepsCodeAndObjectsAfterTheBundleWasUnloaded) {
    const auto bundle = platform::NSBundle::bundleWithPath(plugins.add("good-1.bundle", "TestPlugin"));
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
