#pragma once

#include "platform/preferences/PSListController.h"
#include "platform/ui/UIView.h"

#include <memory>
#include <string>

namespace lumora {

/// The base of all pages that show one view instead of rows. The view is made anew at each appearance and fetches its
/// settings itself.
///
///     class FontViewController final : public PageOf<FontView> {
///       public:
///         FontViewController() : PageOf("Fonts") {}
///     };
///
/// Main thread; an appearance blocks while the view is being made.
class HostedViewPage : public platform::PSListController {
  public:
    [[nodiscard]] std::string navigationTitle() const override { return title_; }
    [[nodiscard]] std::string title() const override { return title_; }
    void viewWillAppear(bool animated) override;

  protected:
    explicit HostedViewPage(std::string title) : title_(std::move(title)) {}

    /// Makes the view that fills the page; null leaves the page empty.
    virtual std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) = 0;

  private:
    std::string title_;
};

/// The base of a page whose view needs only its frame.
template<class View>
class PageOf : public HostedViewPage {
  protected:
    using HostedViewPage::HostedViewPage;

    std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) override {
        return platform::make<View>(frame);
    }
};

} // namespace lumora
