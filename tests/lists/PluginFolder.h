#pragma once

#include "platform/foundation/DeviceRoot.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>

namespace tests {

/// A device root for one test, with a plug-in folder in it; gone when the test ends.
class PluginFolder {
  public:
    PluginFolder() {
        std::string made = std::filesystem::temp_directory_path() / "plugins-XXXXXX";
        if (!::mkdtemp(made.data())) throw std::runtime_error("no folder for the test");
        root_ = made;
        std::filesystem::create_directories(path());
        platform::setDeviceRoot(root_);
    }
    PluginFolder(const PluginFolder&) = delete;
    PluginFolder& operator=(const PluginFolder&) = delete;
    ~PluginFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& root() const { return root_; }
    [[nodiscard]] std::filesystem::path path() const { return root_ / "Library/Nevo/Lumora/Plugins"; }
    /// Where the module of a bundle is.
    [[nodiscard]] std::filesystem::path module(const std::string& bundle) const { return path() / bundle / "Code"; }

    /// Makes "NAME.bundle", or a folder with another extension, with a copy of a module.
    std::filesystem::path add(const std::string& bundle, const std::string& module,
                              const std::string& principalClass = "TestPlugin") const {
        std::filesystem::create_directories(path() / bundle);
        std::filesystem::copy_file(std::filesystem::path(LUMORA_TEST_MODULES) / module, this->module(bundle));
        writeInfo(bundle, "<key>CFBundleExecutable</key><string>Code</string><key>NSPrincipalClass</key><string>" +
                              principalClass + "</string>");
        return path() / bundle;
    }
    void writeInfo(const std::string& bundle, const std::string& entries) const {
        write(path() / bundle / "Info.plist", "<plist><dict>" + entries + "</dict></plist>");
    }
    static void write(const std::filesystem::path& file, const std::string& contents) {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << contents;
    }

  private:
    std::filesystem::path root_;
};

} // namespace tests
