// Archives that other implementations wrote.

#include "Codec.h"
#include "Files.h"

#include "json/Json.h"

namespace {

using namespace platform;

class ForeignArchive : public testing::TestWithParam<std::filesystem::path> {
  protected:
    [[nodiscard]] static Value expected() {
        const std::string name = GetParam().filename().string();
        const Data json = readFile(testData("archives") / (name.substr(0, name.find('.')) + ".json"));
        return valueOf(lumora::readJson({reinterpret_cast<const char*>(json.data()), json.size()}));
    }
};

TEST_P(ForeignArchive, DecodesToItsValue) {
    EXPECT_EQ(valueOf(NSKeyedUnarchiver::unarchive(readFile(GetParam()))), expected());
}

TEST_P(ForeignArchive, SurvivesARoundTripInItsOwnOrder) {
    const Data written = archived(NSKeyedUnarchiver::unarchiveObjectWithData(readFile(GetParam())));
    const Value read = NSKeyedUnarchiver::unarchiveObjectWithData(written);
    EXPECT_EQ(read, expected());
    EXPECT_EQ(archived(read), written) << "equal bytes are equal order, too";
}

TEST_P(ForeignArchive, GivesAValueOrNothingWhereverItIsCutShort) {
    const Data archive = readFile(GetParam());
    for (std::size_t length = 0; length < archive.size(); ++length) {
        const auto value =
            NSKeyedUnarchiver::unarchive(Data(archive.begin(), archive.begin() + std::ptrdiff_t(length)));
        EXPECT_TRUE(value || !value.error().empty()) << length;
    }
}

/// Every change of a byte, but for the sanitizer of threads: there is only one here, and it takes its time.
#ifdef __SANITIZE_THREAD__
constexpr unsigned kNextChange = 23;
#else
constexpr unsigned kNextChange = 1;
#endif

TEST_P(ForeignArchive, GivesAValueOrNothingWithAnyByteChanged) {
    Data archive = readFile(GetParam());
    std::size_t values = 0;
    std::size_t refusals = 0;
    for (std::uint8_t& byte : archive) {
        const std::uint8_t original = byte;
        for (unsigned change = 1; change < 256; change += kNextChange) {
            byte = static_cast<std::uint8_t>(original ^ change);
            std::size_t visits = 0;
            const auto value = NSKeyedUnarchiver::unarchive(archive, &visits);
            ASSERT_LE(visits, 8 * archive.size());
            if (!value) {
                ++refusals;
                continue;
            }
            ++values;
            // A value that is read can be written, and reads the same.
            const Data written = archived(value.value());
            ASSERT_EQ(archived(valueOf(NSKeyedUnarchiver::unarchive(written))), written);
        }
        byte = original;
    }
    // Most of a small archive is structure, but texts and numbers can change and leave it sound.
    EXPECT_GT(values, 0U);
    EXPECT_GT(refusals, 0U);
}

INSTANTIATE_TEST_SUITE_P(Archives, ForeignArchive, testing::ValuesIn(filesIn(testData("archives"), ".bplist")),
                         [](const auto& instance) {
                             std::string name = instance.param.filename().string();
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

TEST(ForeignArchives, AreAllThere) {
    EXPECT_EQ(filesIn(testData("archives"), ".bplist").size(), 2 * filesIn(testData("archives"), ".json").size());
    EXPECT_GE(filesIn(testData("archives"), ".json").size(), 13U);
}

} // namespace
