#pragma once

#include "platform/mail/MFMailComposeViewController.h"
#include "platform/preferences/PSListController.h"
#include "settings/host/Snapshot.h"

#include <memory>

namespace settings {

/// What a page presents over itself, when that is a message to compose; null for nothing. Main thread.
[[nodiscard]] std::shared_ptr<platform::MFMailComposeViewController> composerOf(const platform::PSListController& page);

/// The picture of it, null for nothing. Main thread.
[[nodiscard]] std::shared_ptr<const ComposerSnapshot> composerSnapshotOf(const platform::PSListController& page);

/// Says on standard error how composing ended when that needs saying: what went wrong, and where a draft is. The page
/// keeps silent about it, and nobody else would know. Main thread.
void report(const platform::MFMailComposeViewController& composer);

} // namespace settings
