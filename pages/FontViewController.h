#pragma once

#include "pages/base/HostedViewPage.h"
#include "pickers/FontView.h"

namespace lumora {

/// The "Fonts" page: hosts the list of installed fonts. Main thread.
class FontViewController final : public PageOf<FontView> {
  public:
    FontViewController() : PageOf("Fonts") {}
};

} // namespace lumora
