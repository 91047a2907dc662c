#include "settings/host/IndexRun.h"

#include "link/PreferenceKeys.h"
#include "platform/foundation/Unicode.h"
#include "platform/preferences/PSListController.h"
#include "platform/ui/UITableView.h"
#include "platform/ui/UIView.h"
#include "search/PageLine.h"
#include "settings/host/IndexEntries.h"
#include "settings/host/SnapshotOf.h"

#include <array>
#include <exception>
#include <limits>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace settings {

using namespace platform;
using search::Way;

namespace {

constexpr std::size_t kDeepestPage = 8;
constexpr char kMarkOfPlugin = 's';

// A list of what is chosen on another page: nothing, without settings. So the index has all that could be chosen.
constexpr const char* kListOfChosen = "AUAppsListController";
constexpr const char* kChosenOn = "AppsListController";
constexpr std::array kChosenBy{lumora::kAppsEnabled, lumora::kAUAppsDisabled};

/// A link, and the page that has it.
struct LinkToWalk {
    Way way;
    Class pageClass;
    PSSpecifierRef row;
    RowSnapshot opener;
    std::vector<Class> before; ///< the pages on the way
    std::shared_ptr<PSListController> page;
};

class IndexWalkOverPages {
  public:
    IndexWalkOverPages(const IndexWanted& wanted, const std::function<void(std::string_view)>& tell)
        : wanted_(wanted), tell_(tell) {
        std::string_view behind = wanted.behind;
        behindPlugin_ = behind.starts_with(kMarkOfPlugin);
        if (behindPlugin_) behind.remove_prefix(1);
        if (!wanted.behind.empty()) behind_ = Way::of(behind);
    }

    void run() {
        visit({{}, wanted_.firstPage, nullptr, {}, {}, nullptr});
        inPlugins_ = true;
        for (const LinkToWalk& link : std::exchange(plugins_, {})) {
            bytesLeft_ = wanted_.mostBytesOfPlugin;
            visit(link);
        }
        tell_("end");
    }

  private:
    /// Whether the page has been told of already, with all pages behind it.
    [[nodiscard]] bool isDone(const Way& way) const {
        if (!behind_) return false;
        if (inPlugins_ != behindPlugin_) return behindPlugin_;
        return way.leadsOver(*behind_) || (way < *behind_ && !behind_->leadsOver(way));
    }
    /// Whether a page that has been told of is needed once more, for the links on it.
    [[nodiscard]] bool isNeeded(const Way& way) const { return behind_ && behind_->leadsOver(way) && way != *behind_; }
    [[nodiscard]] bool isBehindPluginPage() const { return inPlugins_ && depthInPlugin_ > 0; }

    void visit(const LinkToWalk& link) {
        const bool told = isDone(link.way) || isNeeded(link.way);
        if (told && !isNeeded(link.way)) return;
        const std::string title = printable(link.row ? link.row->name() : wanted_.firstTitle);
        if (!isBehindPluginPage()) {
            const std::string mark = inPlugins_ ? std::string{kMarkOfPlugin} : std::string();
            tell_("begin " + mark + link.way.text() + " " + title);
        }
        try {
            open(link, told);
        } catch (const std::exception& thrown) {
            tell_("missing " + title + ": " + printable(thrown.what()));
        } catch (...) {
            tell_("missing " + title + ": it throws what is no exception");
        }
    }

    void open(const LinkToWalk& link, bool told) {
        const auto page = make(link.pageClass, link.row ? link.row->name() : wanted_.firstTitle, link.row);
        if (!page) return;
        const PageSnapshot shown = snapshotOf(*page, link.pageClass->name, 0);
        if (!told) tellOf(shown, link);
        if (!shown.hostsView) follow(*page, shown, link, page);
    }

    /// Null when the class makes no page.
    [[nodiscard]] std::shared_ptr<PSListController> make(Class pageClass, const std::string& title,
                                                         const PSSpecifierRef& row) const {
        auto page = std::dynamic_pointer_cast<PSListController>(pageClass->make());
        if (!page) return nullptr;
        if (!title.empty()) page->setTitle(title);
        page->setSpecifier(row);
        const CGRect frame{{0, 0}, wanted_.contentSize};
        if (page->view()) page->view()->setFrame(frame);
        page->viewWillAppear(false);
        if (page->view()) page->view()->setFrame(frame);
        if (UITableView* table = tableOf(*page)) {
            table->layoutIfNeeded();
            table->setViewport(0, std::numeric_limits<double>::infinity()); // rows exist while they are in view
        }
        return page;
    }

    void tellOf(const PageSnapshot& shown, const LinkToWalk& link) {
        search::PageLine told = pageLineOf(shown, link.way, link.row ? &link.opener : nullptr);
        if (shown.className == kListOfChosen) told.entries = entriesToChoose();
        const auto line = search::writePageLine(told);
        const std::string title = printable(shown.title);
        if (!line) return tell_("missing " + title + ": " + line.error());
        if (inPlugins_) {
            if (line.value().size() > bytesLeft_) return tell_("missing " + title + ": it has too many rows");
            bytesLeft_ -= line.value().size();
        }
        tell_("page " + line.value());
    }

    [[nodiscard]] std::vector<search::Entry> entriesToChoose() const {
        const Class from = NSClassFromString(kChosenOn);
        const auto page = from ? make(from, {}, nullptr) : nullptr;
        if (!page) return {};
        auto entries = pageLineOf(snapshotOf(*page, from->name, 0), {}, nullptr).entries;
        for (search::Entry& entry : entries)
            entry.chosenBy.assign(kChosenBy.begin(), kChosenBy.end());
        return entries;
    }

    void follow(PSListController& page, const PageSnapshot& shown, const LinkToWalk& link,
                const std::shared_ptr<PSListController>& owner) {
        const PSSpecifierList rows = page.specifiers();
        if (!rows || link.way.rows.size() >= kDeepestPage) return;
        for (std::size_t i = 0; i < rows->size() && i < shown.rows.size(); ++i) {
            const PSSpecifierRef& row = (*rows)[i];
            if (!row || (row->cellType() != PSLinkCell && row->cellType() != PSLinkListCell)) continue;
            const Class pageClass = row->detail().resolve();
            LinkToWalk next{link.way, pageClass, row, shown.rows[i], link.before, owner};
            next.before.push_back(link.pageClass);
            next.way.rows.push_back(i);
            if (!pageClass || leadsInCircles(next)) continue;
            // Pages of plug-ins are known to their rows alone.
            if (!inPlugins_ && NSClassFromString(pageClass->name) != pageClass) {
                plugins_.push_back(std::move(next));
                continue;
            }
            ++depthInPlugin_;
            visit(next);
            --depthInPlugin_;
        }
    }

    /// To a page that has been found elsewhere. A page may have several links to one class, such as that of option lists.
    bool leadsInCircles(const LinkToWalk& link) {
        for (const Class before : link.before)
            if (before == link.pageClass) return true;
        const Class from = link.before.back();
        return link.row->cellType() == PSLinkCell && foundOn_.emplace(link.pageClass, from).first->second != from;
    }

    const IndexWanted& wanted_;
    const std::function<void(std::string_view)>& tell_;
    std::optional<Way> behind_;
    bool behindPlugin_ = false;
    bool inPlugins_ = false;
    int depthInPlugin_ = 0;
    std::size_t bytesLeft_ = 0;
    std::vector<LinkToWalk> plugins_;
    std::map<Class, Class> foundOn_;
};

} // namespace

void walkForIndex(const IndexWanted& wanted, const std::function<void(std::string_view)>& tell) {
    IndexWalkOverPages(wanted, tell).run();
}

} // namespace settings
