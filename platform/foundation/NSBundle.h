#pragma once

#include "platform/foundation/Class.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>

namespace platform {

enum class FileCheck : unsigned char; // in SharedObject.h

/// A folder with an `Info.plist`, a shared object and resources.
///
///     auto bundle = NSBundle::bundleForClass(typeid(PreferenceHelper));
///     auto icon = bundle->pathForResource("mail", "png");   // empty when there is none
///
/// Code once loaded stays for the life of the process. Main thread, but for pathForResource(), which any may call.
class PLATFORM_EXPORT NSBundle {
  public:
    /// Null when there is no folder at the path.
    [[nodiscard]] static std::shared_ptr<NSBundle> bundleWithPath(const std::filesystem::path& folder);
    /// The bundle whose shared object holds the class: the folder of that file. Asked of the class's type information,
    /// which stands in the library that defines the class's first virtual operation. Never null.
    [[nodiscard]] static std::shared_ptr<NSBundle> bundleForClass(const std::type_info& type);

    /// The shared object that `CFBundleExecutable` names, whether or not it is there; empty when nothing is named.
    [[nodiscard]] std::filesystem::path executablePath() const;
    /// Loads the shared object that `CFBundleExecutable` names, unless it is loaded already. A broken one is an error
    /// here and silence at whoever must be silent. One that mayBeLoaded() has let through just now is not looked at
    /// again.
    Result<void> load();
    Result<void> load(FileCheck check);
    /// The class that `NSPrincipalClass` names, null when there is none. Asks the registry, so load() goes first.
    [[nodiscard]] Class principalClass() const;
    /// For bundles whose principal class is a table of C functions: what the shared object itself exports under the
    /// prefix followed by `NSPrincipalClass`. Null when it is not loaded, when there is none, or when the name is no
    /// identifier.
    [[nodiscard]] const void* principalClassTable(const std::string& prefix) const;
    /// Takes back a load(); false when there was none. The code stays where it is, because objects of it live on.
    bool unload();

    /// The file "name.type" among the resources; empty when there is none. A name that would leave the bundle has none.
    [[nodiscard]] std::filesystem::path pathForResource(std::string_view name, std::string_view type) const;

    [[nodiscard]] const std::filesystem::path& bundlePath() const { return folder_; }
    /// Empty when Info.plist is missing or broken.
    [[nodiscard]] const Dictionary& infoDictionary() const { return info_; }

    explicit NSBundle(std::filesystem::path folder);

  private:
    std::filesystem::path folder_;
    Dictionary info_;
    void* loaded_ = nullptr; ///< the loader's handle, null when not loaded
};

} // namespace platform
