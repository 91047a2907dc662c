#include "settings/model/Panes.h"

#include <algorithm>
#include <cmath>

namespace settings {
namespace {

constexpr double kShareOfList = 0.44;

} // namespace

double Panes::listWidthIn(platform::CGSize area, int columns, double divider) {
    if (columns < 2 || area.width < kRoomForTwo.width || area.height < kRoomForTwo.height) return 0;
    const double width = divider > 0 ? divider : area.width * kShareOfList;
    return std::clamp(std::round(width), kNarrowest, kWidest);
}

double Panes::viewWidthIn(double width, double listWidth) {
    return listWidth > 0 ? std::min(width - listWidth, kWidestView) : width;
}

} // namespace settings
