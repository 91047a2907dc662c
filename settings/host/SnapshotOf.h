#pragma once

#include "platform/mail/MFMailComposeViewController.h"
#include "platform/preferences/PSListController.h"
#include "platform/ui/CGGeometry.h"
#include "platform/ui/UITableView.h"
#include "settings/host/Snapshot.h"

#include <cstdint>
#include <memory>
#include <string>

namespace settings {

/// Pictures of what pages hold. Everything here is for the main thread.

/// A page as it stands, with what it presents. Asks for its rows and reads the value of each; throws what the page
/// throws, and for a null row.
[[nodiscard]] PageSnapshot snapshotOf(platform::PSListController& page, const std::string& className, std::uint64_t id);

/// One row of a page, its value read again.
[[nodiscard]] RowSnapshot snapshotOf(platform::PSListController& page, std::size_t row);

/// The message that the page presents over itself; null for none.
[[nodiscard]] std::shared_ptr<platform::MFMailComposeViewController> composerOf(const platform::PSListController& page);

/// Puts into the picture of a page what the page presents over itself.
void addComposer(PageSnapshot& shown, const platform::PSListController& page);

/// The row at a position, null when the page has no such row.
[[nodiscard]] platform::PSSpecifierRef rowAt(platform::PSListController& page, std::size_t position);

/// The first table in a page's view, which may be the view itself; null for none.
[[nodiscard]] platform::UITableView* tableOf(const platform::PSListController& page);

/// Whether something in a page's view has no resizing mask, and so keeps its place and size whatever the page's size is.
[[nodiscard]] bool keepsPlaces(const platform::UIView& view);

/// How far what has no resizing mask reaches in a page's view.
[[nodiscard]] platform::CGSize reachOf(const platform::UIView& view);

/// Has the table and the text in a page's new view take over from those in its former one.
void takeOver(platform::UIView& view, platform::UIView& former);

/// A view and all that is seen in it, after it has laid itself out and drawn.
[[nodiscard]] ViewSnapshot snapshotOf(platform::UIView& view);

} // namespace settings
