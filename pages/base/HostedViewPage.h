#pragma once

#include "platform/preferences/PSListController.h"
#include "platform/ui/UIView.h"

#include <memory>
#include <string>

namespace lumora {

/// A page that shows one view and no rows: what all such pages share. The view is made anew on each appearance, fetches
/// its settings itself and keeps nothing when the page is left.
///
///     class FontViewController final : public PageOf<FontView> {
///       public:
///         FontViewController() : PageOf("Fonts") {}
///     };
///
/// Main thread; an appearance blocks for as long as making the view does.
class HostedViewPage : public platform::PSListController {
  public:
    [[nodiscard]] std::string navigationTitle() const override { return title_; }
    [[nodiscard]] std::string title() const override { return title_; }
    void viewWillAppear(bool animated) override;

  protected:
    explicit HostedViewPage(std::string title) : title_(std::move(title)) {}

    /// Null is shown as it is: a page without content.
    virtual std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) = 0;

  private:
    std::string title_;
};

/// A hosted view of that class, made for its frame.
template<class View>
class PageOf : public HostedViewPage {
  protected:
    using HostedViewPage::HostedViewPage;

    std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) override {
        return platform::make<View>(frame);
    }
};

} // namespace lumora
