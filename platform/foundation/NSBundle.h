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
/// Code once loaded stays for the life of the process. Main thread; pathForResource(): any thread.
class PLATFORM_EXPORT NSBundle {
  public:
    /// Null when there is no folder at the path.
    [[nodiscard]] static std::shared_ptr<NSBundle> bundleWithPath(const std::filesystem::path& folder);
    /// The bundle whose shared object holds the class: the folder of that file. The class's type information stands in
    /// the library that defines the class's first virtual operation. Never null.
    [[nodiscard]] static std::shared_ptr<NSBundle> bundleForClass(const std::type_info& type);

    /// The shared object that `CFBundleExecutable` names, which may be missing; empty when the key names nothing.
    [[nodiscard]] std::filesystem::path executablePath() const;
    /// Loads the shared object that `CFBundleExecutable` names, unless it is loaded already. FileCheck::None suits a
    /// file that mayBeLoaded() has just let through.
    Result<void> load();
    Result<void> load(FileCheck check);
    /// The class that `NSPrincipalClass` names, null when there is none. load() goes first: it registers the class.
    [[nodiscard]] Class principalClass() const;
    /// For bundles whose principal class is a table of C functions: what the loaded shared object itself exports under
    /// the prefix followed by the name in `NSPrincipalClass`. Null when it exports nothing so named, when it is not
    /// loaded, or when the name is no identifier.
    [[nodiscard]] const void* principalClassTable(const std::string& prefix) const;
    /// Takes back a load(); false when there was none. The code stays in the process, since its objects live on.
    bool unload();

    /// The path of the file "name.type" among the resources; empty when there is none, or when the name leads out of
    /// the bundle.
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
