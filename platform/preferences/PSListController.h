#pragma once

#include "platform/preferences/PSSpecifier.h"
#include "platform/ui/UIViewController.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class UIView;

/// A page's rows in display order, never changed once made; a page's row list is this object or null.
using PSSpecifierList = std::shared_ptr<const std::vector<PSSpecifierRef>>;

/// What the navigation bar shows for a page.
struct UINavigationItem {
    std::string title;
};

/// A settings page: the base of every page that the Settings application can open.
///
/// A page either has rows (specifiers()) or shows one view that fills it (setView() from viewWillAppear()). The
/// application makes it with make<T>(), so init() runs to its end before anything is shown. Main thread.
class PLATFORM_EXPORT PSListController : public UIViewController {
  public:
    PSListController();
    ~PSListController() override;

    virtual bool init() { return true; }

    /// The rows; the base class gives the row list as it stands, null on a page without rows.
    virtual PSSpecifierList specifiers() { return _specifiers; }

    /// The application calls this each time the page is about to be seen.
    virtual void viewWillAppear(bool /*animated*/) {}

    /// What the page calls itself; the base class gives what setTitle() was given, which is the opening row's title.
    [[nodiscard]] virtual std::string title() const { return title_; }
    [[nodiscard]] virtual std::string navigationTitle() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    /// Null on a platform version whose pages have none.
    [[nodiscard]] virtual UINavigationItem* navigationItem() { return &navigationItem_; }

    /// The content view. It fills the page and has its frame; null when setView(nullptr) said so.
    [[nodiscard]] const std::shared_ptr<UIView>& view() const { return view_; }
    void setView(std::shared_ptr<UIView> view);
    /// True once a view other than the page's own has been set: the page then shows that view and no rows.
    [[nodiscard]] bool hostsView() const { return hostsView_; }

    /// The row that opened this page; null for the first page.
    [[nodiscard]] const PSSpecifierRef& specifier() const { return specifier_; }
    void setSpecifier(PSSpecifierRef row) { specifier_ = std::move(row); }

  protected:
    PSSpecifierList _specifiers; ///< the row list, built by specifiers() on the first request

  private:
    std::string title_;
    UINavigationItem navigationItem_;
    std::shared_ptr<UIView> view_;
    bool hostsView_ = false;
    PSSpecifierRef specifier_;
};

} // namespace platform
