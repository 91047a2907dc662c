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
/// application makes a page with make<T>() and shows it once init() has returned. Main thread.
class PLATFORM_EXPORT PSListController : public UIViewController {
  public:
    PSListController();
    ~PSListController() override;

    virtual bool init();

    /// The rows; null on a page without rows.
    virtual PSSpecifierList specifiers() { return _specifiers; }

    /// The application calls this each time before the page is seen.
    virtual void viewWillAppear(bool animated);

    /// What the page calls itself: by default what setTitle() was given, which is the title of the row that opened it.
    [[nodiscard]] virtual std::string title() const { return title_; }
    [[nodiscard]] virtual std::string navigationTitle() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    /// Null on a version of the platform without navigation items.
    [[nodiscard]] virtual UINavigationItem* navigationItem() { return &navigationItem_; }

    /// The content view, which fills the page and has its frame. Null after setView(nullptr).
    [[nodiscard]] const std::shared_ptr<UIView>& view() const { return view_; }
    void setView(std::shared_ptr<UIView> view);
    /// True once setView() has replaced the page's own view: the page then shows that view and no rows.
    [[nodiscard]] bool hostsView() const { return hostsView_; }

    /// The row that opened this page; null for the first page.
    [[nodiscard]] const PSSpecifierRef& specifier() const { return specifier_; }
    void setSpecifier(PSSpecifierRef row) { specifier_ = std::move(row); }

  protected:
    PSSpecifierList _specifiers; ///< what specifiers() gives; subclasses fill it at the first request

  private:
    std::string title_;
    UINavigationItem navigationItem_;
    std::shared_ptr<UIView> view_;
    bool hostsView_ = false;
    PSSpecifierRef specifier_;
};

} // namespace platform
