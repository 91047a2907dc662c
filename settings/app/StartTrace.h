#pragma once

class QQuickWindow;

namespace settings {

class Shell;

/// For the benchmark: with LUMORA_TRACE_START set, tells on standard error how long the start took and how much memory
/// stands, once the first frame and once the first page's first frame have been drawn. The variable holds the moment of
/// the start in nanoseconds of CLOCK_MONOTONIC.
void traceStart(QQuickWindow& window, Shell& shell);

} // namespace settings
