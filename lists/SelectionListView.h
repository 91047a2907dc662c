#pragma once

#include "link/SettingsSession.h"
#include "platform/ui/UITableView.h"
#include "platform/ui/Undoable.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace lumora {

/// The title that the user reads, by identifier.
using Titles = std::unordered_map<std::string, std::string>;

/// The identifiers in the two sections of a reorderable selection, in display order.
struct Selection {
    std::vector<std::string> enabled;
    std::vector<std::string> disabled;
};

/// A reorderable selection list: one table, always in editing mode, with the sections "Enabled" and "Disabled". Rows
/// are dragged within and between them, and every drop is saved at once. This is the base of the three list views; each
/// adds where its rows come from, which of the lists it saves, and under which preference key.
///
/// The list shows what was saved as it stands: an identifier that is no longer installed has a row with an empty title
/// and is saved back unchanged, and one that was saved twice has two rows. Main thread; making a view blocks until the
/// settings are there.
class SelectionListView : public platform::UIView,
                          public platform::UITableViewDataSource,
                          public platform::UITableViewDelegate,
                          public platform::Undoable {
  public:
    bool initWithFrame(const platform::CGRect& frame) override;

    [[nodiscard]] const std::vector<std::string>& enabled() const { return selection_.enabled; }
    [[nodiscard]] const std::vector<std::string>& disabled() const { return selection_.disabled; }
    [[nodiscard]] platform::UITableView& tableView() { return *tableView_; }

    /// Stores the list that this view saves, and sends it to the tweak.
    void savePreferences();

    [[nodiscard]] std::string undoKey() const override { return savedKey_; }
    /// Shown are both lists.
    [[nodiscard]] State undoState() const override;
    /// Where something was installed or removed meanwhile, the lists are built as for a new view.
    void restore(const State& state) override;

    int numberOfSectionsInTableView(platform::UITableView& tableView) override;
    int numberOfRowsInSection(platform::UITableView& tableView, int section) override;
    std::shared_ptr<platform::UITableViewCell> cellForRowAtIndexPath(platform::UITableView& tableView,
                                                                     platform::NSIndexPath path) override;
    std::string titleForHeaderInSection(platform::UITableView& tableView, int section) override;
    std::string titleForFooterInSection(platform::UITableView& tableView, int section) override;
    std::string nameOfRowAtIndexPath(platform::UITableView& tableView, platform::NSIndexPath path) override;
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

    /// Gets ready what the lists are built from; does nothing by default.
    virtual void prepare() {}
    /// Builds both lists.
    [[nodiscard]] virtual Selection setupArrays() = 0;
    /// The titles of everything installed; valid once the lists are built.
    [[nodiscard]] virtual const Titles& titles() const = 0;
    /// The text beneath the last section.
    [[nodiscard]] virtual std::string footer() const = 0;
    /// How the table follows the view's size.
    [[nodiscard]] virtual unsigned tableMask() const { return platform::UIViewAutoresizingNone; }
    /// Adds to a cell whose title is set; does nothing by default.
    virtual void decorate(platform::UITableViewCell& /*cell*/, const std::string& /*identifier*/) {}
    /// Which of the two lists is saved.
    [[nodiscard]] virtual const std::vector<std::string>& savedList() const { return enabled(); }

    /// The texts that were saved under a key. Kept on purpose: a list that was never saved starts empty.
    [[nodiscard]] std::vector<std::string> saved(const char* key) const;

  private:
    void setupTableViewWithFrame(const platform::CGRect& frame);
    [[nodiscard]] std::string identifierAt(platform::NSIndexPath path) const;
    /// The list of a section; every section but the first counts as the second.
    [[nodiscard]] std::vector<std::string>& listIn(int section);

    SettingsSession& session_;
    const char* savedKey_;
    Selection selection_;
    platform::Value stored_; ///< by this view, or what it began with: a late reply changes the session's under it
    std::shared_ptr<platform::UITableView> tableView_;
};

/// The identifiers sorted by title in the order of the user's language, ignoring case; a missing title counts as empty.
/// The order of equal titles is undefined.
[[nodiscard]] std::vector<std::string> sortedByTitle(const std::vector<std::string>& identifiers, const Titles& titles);
/// All identifiers that have a title, without those of the list, sorted in the same way.
[[nodiscard]] std::vector<std::string> restSortedByTitle(const Titles& titles, const std::vector<std::string>& without);

} // namespace lumora
