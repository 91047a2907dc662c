#pragma once

#include "platform/mail/NSError.h"

namespace platform {

class MFMailComposeViewController;

/// How composing ended; the platform's numbers.
enum MFMailComposeResult : int {
    MFMailComposeResultCancelled = 0,
    MFMailComposeResultSaved = 1, ///< kept as a draft, or handed to the user's own mail program
    MFMailComposeResultSent = 2,
    MFMailComposeResultFailed = 3,
};

/// Hears once that composing has ended.
///
///     composer->setMailComposeDelegate(page);
///
/// Main thread.
class MFMailComposeViewControllerDelegate {
  public:
    /// The error is null unless the result is a failure.
    virtual void mailComposeController(MFMailComposeViewController& controller, MFMailComposeResult result,
                                       const NSError* error) = 0;

  protected:
    ~MFMailComposeViewControllerDelegate() = default;
};

} // namespace platform
