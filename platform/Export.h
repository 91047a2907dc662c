#pragma once

/// Marks what the platform library offers to the bundle, the tweak and the plug-ins. Everything else stays hidden.
#define PLATFORM_EXPORT __attribute__((visibility("default")))
