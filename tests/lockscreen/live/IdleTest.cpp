#include "tests/lockscreen/live/OpenFace.h"
#include "tests/support/KeptEnvironment.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <numeric>

using namespace lumora;
using namespace tests;
using namespace std::chrono_literals;
using platform::Dictionary;
using platform::List;

namespace {

constexpr auto kIdle = 10s;
/// After what was done last, its movements are over.
constexpr auto kRest = 2s;

void letPass(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

Dictionary everything() {
    return {{"kTweakEnabled", true},
            {"kAppsEnabled", List{"org.lumora.samples.Mail", "org.lumora.samples.Music"}},
            {"kAppViewsEnabled", List{"org.lumora.plugins.weather"}},
            {"kLSDateSubtitle", "still"}};
}

} // namespace

TEST(IdleFace, DrawsNothingOnAnySurfaceWhileNothingChanges) {
    const KeptEnvironment kept;
    ::setenv("LUMORA_ROOT", LUMORA_TEST_ROOT, 1);
    const auto installation = Installation::readNow();
    std::array<OpenFace, 5> faces;
    constexpr std::array surfaces{Surface::notices, Surface::apps, Surface::appView, Surface::passcode,
                                  Surface::opened};
    for (std::size_t i = 0; i < faces.size(); ++i) {
        faces[i].live().take(installation);
        faces[i].model().setSettings(everything(), {});
        faces[i].model().show(surfaces[i]);
        ASSERT_EQ(faces[i].model().behaviour().state().surface, surfaces[i]);
        ASSERT_TRUE(comes([&] { return faces[i].frames() > 0 && faces[i].live().icons().isComplete(); }));
    }
    letPass(kRest);
    std::array<int, 5> before{};
    for (std::size_t i = 0; i < faces.size(); ++i)
        before[i] = faces[i].frames();
    letPass(kIdle);
    for (std::size_t i = 0; i < faces.size(); ++i)
        EXPECT_EQ(faces[i].frames(), before[i]) << "surface " << static_cast<char>(surfaces[i]);

    Dictionary changed = everything();
    changed.set("kLSDateSubtitle", "moved");
    faces[0].model().setSettings(changed, {});
    EXPECT_TRUE(comes([&] { return faces[0].frames() > before[0]; })) << "a change is drawn";
}
