#pragma once

#include "link/SettingsSession.h"
#include "lists/Move.h"
#include "platform/ui/UITableView.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace lumora {

/// Identifier to what the user reads.
using Titles = std::unordered_map<std::string, std::string>;

/// A reorderable selection list: one table, always in editing mode, with the sections "Enabled" and "Disabled". Rows
/// are dragged within and between them, and every drop is saved at once. This is what the three list views share; each
/// adds where its rows come from, which of the lists it saves, and under which preference key.
///
/// What was saved is shown as it stands: an identifier that is no longer installed is a row with an empty title, is
/// saved back unchanged, and one that was saved twice has two rows. Main thread; making one blocks for as long as the
/// settings take.
class SelectionListView : public platform::UIView,
                          public platform::UITableViewDataSource,
                          public platform::UITableViewDelegate {
  public:
    bool initWithFrame(const platform::CGRect& frame) override;

    [[nodiscard]] const std::vector<std::string>& enabled() const { return selection_.enabled; }
    [[nodiscard]] const std::vector<std::string>& disabled() const { return selection_.disabled; }
    [[nodiscard]] platform::UITableView& tableView() { return *tableView_; }

    /// Stores the list that this view saves and sends it to the tweak.
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
    explicit SelectionListView(SettingsSession& session) : session_(session) {}

    /// What must be there before the lists are built; by default nothing.
    virtual void prepare() {}
    /// Builds both lists.
    [[nodiscard]] virtual Selection setupArrays() = 0;
    /// The titles of everything that is installed, valid once the lists are built.
    [[nodiscard]] virtual const Titles& titles() const = 0;
    /// Beneath the last section.
    [[nodiscard]] virtual std::string footer() const = 0;
    /// How the table follows the view's size.
    [[nodiscard]] virtual unsigned tableMask() const { return platform::UIViewAutoresizingNone; }
    /// Puts more than the title into a cell; by default nothing.
    virtual void decorate(platform::UITableViewCell& /*cell*/, const std::string& /*identifier*/) {}
    [[nodiscard]] virtual const char* savedKey() const = 0;
    [[nodiscard]] virtual const std::vector<std::string>& savedList() const = 0;

    /// The list of texts that was saved under a key. Kept on purpose: a list that was never saved starts empty.
    [[nodiscard]] std::vector<std::string> saved(const char* key) const;

  private:
    void setupTableViewWithFrame(const platform::CGRect& frame);
    [[nodiscard]] std::string identifierAt(platform::NSIndexPath path) const;

    SettingsSession& session_;
    Selection selection_;
    std::shared_ptr<platform::UITableView> tableView_;
};

/// Identifiers sorted by their titles as the user's language does, case aside; one without a title counts as one with
/// the empty title. Equal titles keep no order.
[[nodiscard]] std::vector<std::string> sortedByTitle(const std::vector<std::string>& identifiers, const Titles& titles);
/// Everything that has a title and is in none of these lists, sorted in the same way.
using Identifiers = std::reference_wrapper<const std::vector<std::string>>;
[[nodiscard]] std::vector<std::string> restSortedByTitle(const Titles& titles,
                                                         std::initializer_list<Identifiers> leftOut);
/// What of the first list is not in the second, in its order.
[[nodiscard]] std::vector<std::string> without(std::vector<std::string> identifiers,
                                               const std::vector<std::string>& removed);

} // namespace lumora
