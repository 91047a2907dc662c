#pragma once

#include "link/SettingsSession.h"
#include "platform/ui/UITableView.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace lumora {

/// The title that the user reads, by identifier.
using Titles = std::unordered_map<std::string, std::string>;

/// The two lists of a reorderable selection: what is in section 0 and what is in section 1.
struct Selection {
    std::vector<std::string> enabled;
    std::vector<std::string> disabled;
};

/// A reorderable selection list: one table, always in editing mode, with the sections "Enabled" and "Disabled". Rows
/// are dragged within and between them, and every drop is saved at once. This is what the three list views share; each
/// adds where its rows come from, which of the lists it saves, and under which preference key.
///
/// The list shows what was saved as it stands: an identifier that is no longer installed has a row with an empty title
/// and is saved back unchanged; one that was saved twice has two rows. Main thread; making one blocks until the
/// settings are there.
class SelectionListView : public platform::UIView,
                          public platform::UITableViewDataSource,
                          public platform::UITableViewDelegate {
  public:
    bool initWithFrame(const platform::CGRect& frame) override;

    [[nodiscard]] const std::vector<std::string>& enabled() const { return selection_.enabled; }
    [[nodiscard]] const std::vector<std::string>& disabled() const { return selection_.disabled; }
    [[nodiscard]] platform::UITableView& tableView() { return *tableView_; }

    /// Stores this view's saved list and sends it to the tweak.
    void savePreferences();

    int numberOfSectionsInTableView(platform::UITableView& tableView) override;
    int numberOfRowsInSection(platform::UITableView& tableView, int section) override;
    std::shared_ptr<platform::UITableViewCell> cellForRowAtIndexPath(platform::UITableView& tableView,
                                                                     platform::NSIndexPath path) override;
    std::string titleForHeaderInSection(platform::UITableView& tableView, int section) override;
    std::string titleForFooterInSection(platform::UITableView& tableView, int section) override;
    bool canMoveRowAtIndexPath(platform::UITableView& tableView, platform::NSIndexPath path) override;
    void moveRowAtIndexPath(platform::UITableView& tableView, platform::NSIndexPath from,
                            platform::NSIndexPath to) override;
    double heightForRowAtIndexPath(platform::UITableView& tableView, platform::NSIndexPath path) override;
    platform::UITableViewCellEditingStyle editingStyleForRowAtIndexPath(platform::UITableView& tableView,
                                                                        platform::NSIndexPath path) override;
    bool shouldIndentWhileEditingRowAtIndexPath(platform::UITableView& tableView, platform::NSIndexPath path) override;

  protected:
    /// The list is saved under that preference key.
    SelectionListView(SettingsSession& session, const char* savedKey) : session_(session), savedKey_(savedKey) {}

    /// Gets ready what the lists are built from; by default nothing.
    virtual void prepare() {}
    /// Builds both lists.
    [[nodiscard]] virtual Selection setupArrays() = 0;
    /// The titles of all that is installed, valid once the lists are built.
    [[nodiscard]] virtual const Titles& titles() const = 0;
    /// The text beneath the last section.
    [[nodiscard]] virtual std::string footer() const = 0;
    /// How the table follows the view's size.
    [[nodiscard]] virtual unsigned tableMask() const { return platform::UIViewAutoresizingNone; }
    /// Adds to a cell that has its title; by default nothing.
    virtual void decorate(platform::UITableViewCell& /*cell*/, const std::string& /*identifier*/) {}
    /// Which of the two lists is saved.
    [[nodiscard]] virtual const std::vector<std::string>& savedList() const { return enabled(); }

    /// The list of texts that was saved under a key. Kept on purpose: a list that was never saved starts empty.
    [[nodiscard]] std::vector<std::string> saved(const char* key) const;

  private:
    void setupTableViewWithFrame(const platform::CGRect& frame);
    [[nodiscard]] std::string identifierAt(platform::NSIndexPath path) const;
    /// Every section but the first counts as the second.
    [[nodiscard]] std::vector<std::string>& listIn(int section);

    SettingsSession& session_;
    const char* savedKey_;
    Selection selection_;
    std::shared_ptr<platform::UITableView> tableView_;
};

/// The identifiers sorted by title in the order of the user's language, ignoring case; a missing title counts as empty.
/// The order of equal titles is undefined.
[[nodiscard]] std::vector<std::string> sortedByTitle(const std::vector<std::string>& identifiers, const Titles& titles);
/// All identifiers that have a title, without those of the list, sorted in the same way.
[[nodiscard]] std::vector<std::string> restSortedByTitle(const Titles& titles, const std::vector<std::string>& without);

} // namespace lumora
