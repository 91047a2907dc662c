// A settings bundle with one page: a table whose last row, far below what is in view at first, throws when it is shown.
#include "platform/preferences/PSListController.h"
#include "platform/ui/UITableView.h"

#include <stdexcept>

namespace {

class FaultyTable final : public platform::UIView,
                          public platform::UITableViewDataSource,
                          public platform::UITableViewDelegate {
  public:
    bool initWithFrame(const platform::CGRect& frame) override {
        if (!UIView::initWithFrame(frame)) return false;
        const auto table = platform::make<platform::UITableView>(frame, platform::UITableViewStylePlain);
        table->setDataSource(this);
        table->setDelegate(this);
        addSubview(table);
        return true;
    }
    int numberOfRowsInSection(platform::UITableView& /*table*/, int /*section*/) override { return 1000; }
    std::shared_ptr<platform::UITableViewCell> cellForRowAtIndexPath(platform::UITableView& /*table*/,
                                                                     platform::NSIndexPath path) override {
        if (path.row == 999) throw std::runtime_error("no such row");
        return platform::make<platform::UITableViewCell>(platform::UITableViewCellStyleDefault, "cell");
    }
};

class FaultyTablePage final : public platform::PSListController {
  public:
    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        setView(platform::make<FaultyTable>(view()->frame()));
    }
};

PLATFORM_CLASS(FaultyTablePage)

} // namespace
