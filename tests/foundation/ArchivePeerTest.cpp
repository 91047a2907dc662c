// What we write, read by other implementations of the property list.

#include "Files.h"
#include "Json.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/NSKeyedArchiver.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdio>
#include <limits>
#include <memory>
#include <unistd.h>

namespace {

using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::List;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Value;

Value everything() {
    List many;
    for (int i = 0; i < 300; ++i)
        many.emplace_back("org.example.application" + std::to_string(i));
    return Dictionary{
        {"true", true},
        {"false", false},
        {"integers", List{0, 1, 255, 256, 65536, std::int64_t{4294967296}, -1, -129,
                          std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}},
        {"reals", List{0.1, 1.0 / 3, 1.0, -0.5, 1e300}},
        {"texts", List{"", "plain", "Grüße", "日本語", "a😀b", "plain"}},
        {"ключ", "значение"},
        {"nested", Dictionary{{"list", List{List{}, Dictionary{}, List{"x"}}}}},
        {"many", many}};
}

/// The output of a command, and whether it ended well.
std::pair<std::string, bool> run(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r"); // NOLINT(cert-env33-c): the command is the test's own
    std::string output;
    for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe))
        output += static_cast<char>(character);
    return {output, pclose(pipe) == 0};
}

/// A file that goes with the test.
class TemporaryFile {
  public:
    TemporaryFile() : path_(testing::TempDir() + "archive-XXXXXX") { platform::FileDescriptor(mkstemp(path_.data())); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::filesystem::remove(path_); }

    void write(const Data& bytes) const {
        std::ofstream file(path_, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    [[nodiscard]] const std::string& path() const { return path_; }

  private:
    std::string path_;
};

Json readByPython(const Value& value) {
    const TemporaryFile file;
    file.write(NSKeyedArchiver::archivedDataWithRootObject(value).value());
    const auto [output, succeeded] =
        run(std::string(PYTHON) + " " LUMORA_SOURCE "/tests/foundation/unarchive.py " + file.path());
    EXPECT_TRUE(succeeded);
    return Json::parse(output);
}

using Node = std::unique_ptr<void, decltype(&plist_free)>;

Node readByLibplist(const Data& bytes) {
    plist_t node = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes.data()), static_cast<std::uint32_t>(bytes.size()), &node);
    return {node, &plist_free};
}

/// Follows an archive through libplist's tree.
class TreeUnarchiver {
  public:
    explicit TreeUnarchiver(plist_t archive) : objects_(plist_dict_get_item(archive, "$objects")) {}

    Value value(plist_t uidNode) {
        std::uint64_t uid = 0;
        plist_get_uid_val(uidNode, &uid);
        plist_t node = plist_array_get_item(objects_, static_cast<std::uint32_t>(uid));
        switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t boolean = 0;
            plist_get_bool_val(node, &boolean);
            return boolean != 0;
        }
        case PLIST_UINT: {
            std::uint64_t integer = 0;
            plist_get_uint_val(node, &integer);
            return static_cast<std::int64_t>(integer);
        }
        case PLIST_REAL: {
            double real = 0;
            plist_get_real_val(node, &real);
            return real;
        }
        case PLIST_STRING:
            return text(node);
        case PLIST_DICT:
            return container(node);
        default:
            ADD_FAILURE() << "a node of an unexpected kind";
            return {};
        }
    }

  private:
    static std::string text(plist_t node) {
        std::uint64_t length = 0;
        const char* characters = plist_get_string_ptr(node, &length);
        return {characters, static_cast<std::size_t>(length)};
    }

    Value container(plist_t node) {
        plist_t keys = plist_dict_get_item(node, "NS.keys");
        plist_t entries = plist_dict_get_item(node, "NS.objects");
        Dictionary dictionary;
        List list;
        for (std::uint32_t i = 0; i < plist_array_get_size(entries); ++i) {
            Value entry = value(plist_array_get_item(entries, i));
            if (keys != nullptr)
                dictionary.set(*value(plist_array_get_item(keys, i)).text(), std::move(entry));
            else
                list.push_back(std::move(entry));
        }
        return keys != nullptr ? Value(std::move(dictionary)) : Value(std::move(list));
    }

    plist_t objects_;
};

TEST(ArchivePeer, PythonReadsWhatWeWriteInTheSameOrder) {
    const Json json = readByPython(everything());
    expectSame(everything(), json, "");
    std::vector<std::string> keys;
    for (const auto& [key, entry] : json.items())
        keys.push_back(key);
    EXPECT_EQ(keys,
              (std::vector<std::string>{"true", "false", "integers", "reals", "texts", "ключ", "nested", "many"}));
}

TEST(ArchivePeer, PythonReadsNilDataDatesAndNul) {
    using namespace std::string_literals;
    const Json json = readByPython(List{Value(), Data{1, 2, 255}, Date{0.5}, "a\0b"s});
    EXPECT_EQ(json, Json::parse(R"([null, {"data": "0102ff"}, {"date": 0.5}, "a\u0000b"])"));
    EXPECT_TRUE(readByPython(Value()).is_null());
}

TEST(ArchivePeer, LibplistReadsWhatWeWrite) {
    const Node archive = readByLibplist(NSKeyedArchiver::archivedDataWithRootObject(everything()).value());
    ASSERT_NE(archive, nullptr);
    plist_t root = plist_dict_get_item(plist_dict_get_item(archive.get(), "$top"), "root");
    ASSERT_EQ(plist_get_node_type(root), PLIST_UID);
    EXPECT_EQ(TreeUnarchiver(archive.get()).value(root), everything());
}

TEST(ArchivePeer, WeReadWhatLibplistWritesAnew) {
    const Node archive = readByLibplist(NSKeyedArchiver::archivedDataWithRootObject(everything()).value());
    char* bytes = nullptr;
    std::uint32_t size = 0;
    plist_to_bin(archive.get(), &bytes, &size);
    const Data written(bytes, bytes + size);
    plist_mem_free(bytes);
    const auto value = NSKeyedUnarchiver::unarchive(written);
    ASSERT_TRUE(value) << value.error();
    EXPECT_EQ(value.value(), everything());
}

TEST(ArchivePeer, WeReadPropertyListsThatPythonWritesInBothForms) {
    for (const std::string format : {"FMT_BINARY", "FMT_XML"}) {
        const TemporaryFile file;
        const auto [output, succeeded] =
            run(std::string(PYTHON) +
                " -c \"import plistlib, datetime; plistlib.dump({'b': True, 'i': -5, 'r': 0.1, "
                "'t': 'Gr\\u00fc\\u00dfe \\U0001F600', 'd': b'hello', 'w': datetime.datetime(2001, 1, 2), 'l': [1, [], "
                "{}]}, "
                "open('" +
                file.path() + "', 'wb'), fmt=plistlib." + format + ", sort_keys=False)\"");
        ASSERT_TRUE(succeeded) << output;
        const auto value = platform::readPropertyList(readFile(file.path()));
        ASSERT_TRUE(value) << value.error();
        EXPECT_EQ(value.value(), Value(Dictionary{{"b", true},
                                                  {"i", -5},
                                                  {"r", 0.1},
                                                  {"t", "Grüße 😀"},
                                                  {"d", Data{'h', 'e', 'l', 'l', 'o'}},
                                                  {"w", Date{86400}},
                                                  {"l", List{1, List{}, Dictionary{}}}}));
    }
}

} // namespace
