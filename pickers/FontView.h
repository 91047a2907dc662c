#pragma once

#include "link/SettingsSession.h"
#include "platform/ui/UITableView.h"
#include "platform/ui/Undoable.h"

#include <memory>
#include <string>
#include <vector>

namespace lumora {

/// Lists "Default", then every installed font by its name and in that font. The chosen row bears a checkmark; a tap on
/// another row is stored at once.
///
///     const auto view = make<FontView>(frame); // reads the installed fonts, and scrolls to the chosen one
///
/// If the stored font is missing, "Default" is marked, and the name stays stored until a row is tapped. Main thread;
/// making a view blocks until the settings are there.
class FontView final : public platform::UIView,
                       public platform::UITableViewDataSource,
                       public platform::UITableViewDelegate,
                       public platform::Undoable {
  public:
    FontView();
    bool initWithFrame(const platform::CGRect& frame) override;

    /// "Default", then the names of all fonts in the order of the user's language, ignoring case.
    [[nodiscard]] static std::vector<std::string> allFonts();

    [[nodiscard]] const std::vector<std::string>& fonts() const { return fonts_; }
    void setFonts(std::vector<std::string> fonts) { fonts_ = std::move(fonts); }
    /// The row that bears the checkmark.
    [[nodiscard]] platform::NSIndexPath selectedIndex() const { return selectedIndex_; }
    void setSelectedIndex(platform::NSIndexPath path) { selectedIndex_ = path; }
    [[nodiscard]] const std::shared_ptr<platform::UITableView>& tableView() const { return tableView_; }
    void setTableView(std::shared_ptr<platform::UITableView> tableView) { tableView_ = std::move(tableView); }

    /// Stores the chosen font's name and sends it to the tweak.
    void savePreferences();

    [[nodiscard]] std::string undoKey() const override;
    [[nodiscard]] State undoState() const override;
    /// Marks the row of the font that is stored again, and scrolls to it.
    void restore(const State& state) override;

    int numberOfSectionsInTableView(platform::UITableView& tableView) override;
    int numberOfRowsInSection(platform::UITableView& tableView, int section) override;
    double heightForRowAtIndexPath(platform::UITableView& tableView, platform::NSIndexPath path) override;
    std::string titleForHeaderInSection(platform::UITableView& tableView, int section) override;
    std::string nameOfRowAtIndexPath(platform::UITableView& tableView, platform::NSIndexPath path) override;
    std::shared_ptr<platform::UITableViewCell> cellForRowAtIndexPath(platform::UITableView& tableView,
                                                                     platform::NSIndexPath path) override;
    void didSelectRowAtIndexPath(platform::UITableView& tableView, platform::NSIndexPath path) override;

  private:
    void setupArrays();
    /// The row of a stored name.
    [[nodiscard]] platform::NSIndexPath indexOf(const platform::Value& stored) const;
    void setupTableViewWithFrame(const platform::CGRect& frame);

    SettingsSession& session_;
    std::vector<std::string> fonts_;
    platform::NSIndexPath selectedIndex_;
    platform::Value stored_; ///< by this view, or what it began with
    std::shared_ptr<platform::UITableView> tableView_;
};

} // namespace lumora
