#pragma once

#include "platform/preferences/PSListController.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace settings {

/// A page on the way to another one.
struct Step {
    platform::Class pageClass;
    std::shared_ptr<platform::PSListController> page;
};

/// Makes the page of that class which a link row opens; null when it makes none. May throw what a page throws.
using MakePage = std::function<std::shared_ptr<platform::PSListController>(
    platform::Class pageClass, const std::string& title, const platform::PSSpecifierRef& row)>;

/// The pages that links open one after the other between a first page and the nearest one of a class, which comes last;
/// none when no link leads there. Looks at the rows of the nearest pages first, and makes no page before its rows are
/// needed. Main thread.
[[nodiscard]] std::vector<Step> wayTo(const Step& first, platform::Class target, const MakePage& make);

} // namespace settings
