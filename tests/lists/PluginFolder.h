#pragma once

#include "lists/PluginDiscovery.h"
#include "tests/support/DeviceFolder.h"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace tests {

/// A device root for one test, with a plug-in folder in it; gone when the test ends.
class PluginFolder {
  public:
    PluginFolder() { std::filesystem::create_directories(path()); }

    [[nodiscard]] const std::filesystem::path& root() const { return device_.path(); }
    [[nodiscard]] std::filesystem::path path() const { return root() / "Library/Nevo/Lumora/Plugins"; }
    /// Where the module of a bundle is.
    [[nodiscard]] std::filesystem::path module(const std::string& bundle) const { return path() / bundle / "Code"; }

    /// Makes "NAME.bundle", or a folder with another extension, with a copy of a module.
    std::filesystem::path add(const std::string& bundle, const std::string& module,
                              const std::string& principalClass = "TestPlugin") const {
        std::filesystem::create_directories(path() / bundle);
        std::filesystem::copy_file(std::filesystem::path(LUMORA_TEST_MODULES) / module, this->module(bundle));
        write(path() / bundle / "Info.plist", "<plist><dict><key>CFBundleExecutable</key><string>Code</string>"
                                              "<key>NSPrincipalClass</key><string>" +
                                                  principalClass + "</string></dict></plist>");
        return path() / bundle;
    }
    /// Makes "NAME.bundle" of each, with a copy of the test plug-in.
    void addEach(const std::vector<std::string>& names) const {
        for (const std::string& name : names)
            add(name + ".bundle", "TestPlugin");
    }
    static void write(const std::filesystem::path& file, const std::string& contents) {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << contents;
    }

  private:
    DeviceFolder device_;
};

/// What a loaded copy of the test plug-in was asked so far.
inline std::string askedOf(const std::filesystem::path& module) {
    void* handle = ::dlopen(module.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!handle) return "not loaded";
    const auto asked = reinterpret_cast<const char* (*)()>(::dlsym(handle, "testPluginAsked"));
    return asked ? asked() : "no test plug-in";
}

/// What plug-ins call themselves.
inline std::vector<std::string> namesOf(const std::vector<lumora::Plugin>& plugins) {
    std::vector<std::string> names;
    names.reserve(plugins.size());
    for (const lumora::Plugin& plugin : plugins)
        names.push_back(plugin.name().value_or("nil"));
    return names;
}

} // namespace tests
