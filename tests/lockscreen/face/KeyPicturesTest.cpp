// Of each key in the table: the picture differs where the look does, and nowhere else.

#include "lockscreen/KeyTable.h"
#include "tests/lockscreen/AllowedPaths.h"
#include "tests/lockscreen/face/Scenery.h"

#include <gmock/gmock.h>

#include <QRegion>

Q_IMPORT_QML_PLUGIN(LumoraFacePlugin)

namespace {

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;
using platform::Value;

/// Edges are smoothed, and the rim of a pane is half outside of its frame.
constexpr int kEdge = 2;

Taken takenIn(const KeyEntry& entry, const Value& value) {
    const Scene& scene = entry.scene;
    Options options = upright();
    if (scene.landscape) options.phone.size = {844, 390};
    if (!scene.passcode) options.phone.passcode.clear();
    options.surface = scene.surface;
    Dictionary settings = scene.others;
    settings.set(kTweakEnabled, true);
    settings.set(entry.key, value);
    // Some settings leave no way to the surface.
    const Inputs inputs{{}, gesturesIn(scene.events).value(), {}};
    if (auto taken = Scenery::studio().take(options, inputs, settings)) return std::move(taken).value();
    options.surface.reset();
    return taken(options, settings, scene.events);
}

/// A part with its shade.
QRectF reachOf(const Value& part) {
    const Value shade(part["shade"]);
    return shade["opacity"].doubleValue() > 0 ? frameOf(part) | frameOf(shade) : frameOf(part);
}

/// The frames of the innermost parts that a path leads through; of a list, those of all that is in it.
QRegion framesAt(Value value, std::string_view path) {
    QRectF frame;
    while (!path.empty()) {
        if (value["visible"].boolean().value_or(false)) frame = reachOf(value);
        if (path.front() == '[') {
            const List& list = *value.list();
            const std::size_t place = std::stoul(std::string(path.substr(1)));
            value = Value(list.at(place));
            path.remove_prefix(path.find(']') + 1);
        } else {
            const std::string_view name = path.substr(0, path.find_first_of(".["));
            value = Value(value[name]);
            path.remove_prefix(name.size());
        }
        if (path.starts_with('.')) path.remove_prefix(1);
    }
    QRegion frames(frame.toAlignedRect());
    eachVisible(value, "", [&](const std::string&, const Value& part) { frames += reachOf(part).toAlignedRect(); });
    return frames;
}

QRegion grown(const QRegion& region) {
    QRegion wider;
    for (const QRect& part : region)
        wider += part.marginsAdded({kEdge, kEdge, kEdge, kEdge});
    return wider;
}

QRegion difference(const QImage& one, const QImage& other) {
    QRegion pixels;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x) {
            const int begin = x;
            while (x < one.width() && one.pixel(x, y) != other.pixel(x, y))
                ++x;
            if (x > begin) pixels += QRect(begin, y, x - begin, 1);
        }
    return pixels;
}

std::vector<std::size_t> seenKeys() {
    std::vector<std::size_t> seen;
    for (std::size_t i = 0; i < keyTable().size(); ++i)
        if (!keyTable()[i].paths.empty()) seen.push_back(i);
    return seen;
}

class EachSeenKey : public testing::TestWithParam<std::size_t> {
  protected:
    const KeyEntry& entry = keyTable()[GetParam()];
};

TEST_P(EachSeenKey, ChangesItsPartsInThePictureAndNothingElse) {
    const Taken stock = takenIn(entry, entry.stock);
    const Taken shown = takenIn(entry, entry.scene.shown);
    ASSERT_EQ(stock.picture.size(), shown.picture.size());
    QRegion frames;
    const bool sameStages = stock.look.stages == shown.look.stages;
    for (const std::string& path : diff(stock.look, shown.look)) {
        EXPECT_TRUE(isAllowed(entry, path) || !sameStages) << path;
        for (const Look* look : {&stock.look, &shown.look})
            frames += framesAt(documentOf(*look), path);
    }
    const QRegion changed = difference(stock.picture, shown.picture);
    EXPECT_FALSE((changed & frames).isEmpty());
    const QRegion beside = changed - grown(frames);
    const QRect around = beside.boundingRect();
    EXPECT_TRUE(beside.isEmpty()) << around.x() << ", " << around.y() << ", " << around.width() << " x "
                                  << around.height();
}

INSTANTIATE_TEST_SUITE_P(KeyTable, EachSeenKey, testing::ValuesIn(seenKeys()),
                         [](const auto& one) { return std::string(keyTable()[one.param].key); });

} // namespace
