#pragma once

namespace settings {

/// Tells assistive tools what the toolkit leaves out: that a dialog keeps everything else from being used, that a part of
/// the window is disabled, the letters of a text that is no field, and the names of what can be done with a row. Called
/// once, before there is a window. GUI thread.
void completeAccessibility();

} // namespace settings
