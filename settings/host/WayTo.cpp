#include "settings/host/WayTo.h"

#include "platform/preferences/PSSpecifier.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <optional>
#include <set>

namespace settings {

using namespace platform;

namespace {

/// A link on a page that is known, and the page behind it once its rows are needed.
struct Link {
    std::optional<std::size_t> before; ///< the link to the page that has this one; nothing for the first page
    PSSpecifierRef row;
    Class pageClass;
    std::shared_ptr<PSListController> page{};
};

class Search {
  public:
    Search(Class target, const MakePage& make) : target_(target), make_(make) {}

    std::vector<Step> from(const Step& first) {
        seen_.insert(first.pageClass);
        auto found = look(*first.page, std::nullopt);
        for (std::size_t i = 0; !found && i < links_.size(); ++i)
            if (PSListController* page = pageBehind(i)) found = look(*page, i);
        return found && pageBehind(*found) ? wayEndingWith(*found) : std::vector<Step>();
    }

  private:
    /// Notes the page's links, and gives the one that leads to the target.
    std::optional<std::size_t> look(PSListController& page, std::optional<std::size_t> before) {
        const PSSpecifierList rows = rowsOf(page);
        for (const PSSpecifierRef& row : rows ? *rows : std::vector<PSSpecifierRef>()) {
            if (!row || row->cellType() != PSLinkCell) continue;
            const Class pageClass = row->detail().resolve();
            if (!pageClass || !seen_.insert(pageClass).second) continue;
            links_.push_back({before, row, pageClass});
            if (pageClass == target_) return links_.size() - 1;
        }
        return std::nullopt;
    }

    /// Silent about a page that fails: somebody who opens it is told why, and nobody has asked for it here.
    static PSSpecifierList rowsOf(PSListController& page) {
        try {
            return page.specifiers();
        } catch (...) {
            return nullptr;
        }
    }

    /// As silent, and for the same reason.
    PSListController* pageBehind(std::size_t link) {
        Link& behind = links_[link];
        try {
            if (!behind.page) behind.page = make_(behind.pageClass, behind.row->name(), behind.row);
        } catch (...) {
        }
        return behind.page.get();
    }

    [[nodiscard]] std::vector<Step> wayEndingWith(std::size_t link) const {
        std::vector<Step> way;
        for (std::optional<std::size_t> at = link; at; at = links_[*at].before)
            way.push_back({links_[*at].pageClass, links_[*at].page});
        std::ranges::reverse(way);
        return way;
    }

    Class target_;
    const MakePage& make_;
    std::deque<Link> links_; ///< the nearest first
    std::set<Class> seen_;
};

} // namespace

std::vector<Step> wayTo(const Step& first, Class target, const MakePage& make) {
    return Search(target, make).from(first);
}

} // namespace settings
