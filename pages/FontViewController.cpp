#include "pages/FontViewController.h"

namespace lumora {

PLATFORM_CLASS(FontViewController)

} // namespace lumora
