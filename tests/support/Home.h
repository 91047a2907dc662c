#pragma once

#include "tests/support/KeptEnvironment.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace tests {

/// A user's home of its own for one test: no program is registered or found but those that the test puts there, and no
/// mail is sent. When the test ends it is empty again, and the environment as before. All are in one place, because GIO
/// remembers for the life of the process where a user's files are.
class Home {
  public:
    Home() {
        for (const char* folder : {"bin", "tmp", "data/applications", "config", "nothing"})
            std::filesystem::create_directories(path_ / folder);
        ::setenv("HOME", path_.c_str(), 1);
        ::setenv("XDG_DATA_HOME", (path_ / "data").c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (path_ / "config").c_str(), 1);
        ::setenv("XDG_DATA_DIRS", (path_ / "nothing").c_str(), 1);
        ::setenv("XDG_CONFIG_DIRS", (path_ / "nothing").c_str(), 1);
        ::setenv("TMPDIR", (path_ / "tmp").c_str(), 1);
        ::setenv("PATH", ((path_ / "bin").string() + ":/usr/bin:/bin").c_str(), 1);
        ::setenv("LUMORA_SENDMAIL", "", 1);
        ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    }
    ~Home() {
        // What GIO watches stays, since it takes seconds to notice that a folder is there again.
        const std::vector<std::filesystem::path> watched{path_, path_ / "data", path_ / "data/applications",
                                                         path_ / "config"};
        std::error_code ignored;
        for (const auto& folder : watched)
            for (const auto& file : filesIn(folder))
                if (std::find(watched.begin(), watched.end(), file) == watched.end())
                    std::filesystem::remove_all(file, ignored);
        if (!scheme_.empty()) waitUntilKnown(scheme_, "");
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path drafts() const { return path_ / "data/lumora/drafts"; }

    /// Puts a shell script among the user's programs. Another process writes it: a file that this one writes stays open
    /// for writing in every process that another thread forks meanwhile, and cannot be run for so long.
    std::filesystem::path addProgram(const std::string& name, const std::string& script) const {
        const std::filesystem::path file = path_ / "bin" / name;
        auto* const writer = ::popen(("cat > '" + file.string() + "'").c_str(), "we"); // NOLINT(cert-env33-c): ours
        std::fputs(("#!/bin/sh\n" + script + "\n").c_str(), writer);
        ::pclose(writer);
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file;
    }
    /// One that keeps its arguments, and whatever it is given as input.
    std::filesystem::path addRecorder(const std::string& name, const std::string& last = "") const {
        const std::string record = (path_ / name).string();
        return addProgram(name, "cat > " + record + ".input\nprintf '%s\\0' \"$@\" > " + record + ".new\nmv " + record +
                                    ".new " + record + ".arguments\n" + last);
    }
    /// Registers a program as the one that takes a scheme.
    void registerFor(const std::string& scheme, const std::string& desktopId, const std::string& exec) {
        std::ofstream(path_ / "data/applications" / desktopId)
            << "[Desktop Entry]\nType=Application\nName=Test\nExec=" << exec << "\nMimeType=x-scheme-handler/" << scheme
            << ";\n";
        std::ofstream(path_ / "config/mimeapps.list")
            << "[Default Applications]\nx-scheme-handler/" << scheme << "=" << desktopId << "\n";
        scheme_ = scheme;
        waitUntilKnown(scheme, desktopId);
    }
    /// What a recorder was called with, once it has been called.
    [[nodiscard]] std::vector<std::string> argumentsOf(const std::string& name) const {
        const std::filesystem::path file = path_ / (name + ".arguments");
        if (!eventually([&] { return std::filesystem::exists(file); })) throw std::runtime_error(name + " not called");
        std::istringstream text(contentsOf(file));
        std::vector<std::string> arguments;
        for (std::string argument; std::getline(text, argument, '\0');)
            arguments.push_back(argument);
        return arguments;
    }
    [[nodiscard]] std::string inputOf(const std::string& name) const { return contentsOf(path_ / (name + ".input")); }

    [[nodiscard]] static std::string contentsOf(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    /// The files in a folder, hidden ones included; none when there is no folder.
    [[nodiscard]] static std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
        std::error_code none;
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::directory_iterator(folder, none))
            files.push_back(entry.path());
        return files;
    }

  private:
    /// Gone when the program ends.
    static const std::filesystem::path& place() {
        static const TemporaryFolder place("home");
        return place.path();
    }

    /// GIO hears of a change on the disk a moment later, once the platform has loaded it.
    static void waitUntilKnown(const std::string& scheme, const std::string& desktopId) {
        void* gio = ::dlopen("libgio-2.0.so.0", RTLD_LAZY | RTLD_NOLOAD);
        if (gio == nullptr) return;
        const auto takerOf =
            reinterpret_cast<void* (*)(const char*)>(::dlsym(gio, "g_app_info_get_default_for_uri_scheme"));
        const auto idOf = reinterpret_cast<const char* (*)(void*)>(::dlsym(gio, "g_app_info_get_id"));
        const auto release = reinterpret_cast<void (*)(void*)>(::dlsym(gio, "g_object_unref"));
        const bool isKnown = eventually([&] {
            void* taker = takerOf(scheme.c_str());
            const std::string found = taker != nullptr ? idOf(taker) : "";
            if (taker != nullptr) release(taker);
            return found == desktopId;
        });
        if (!isKnown) std::fprintf(stderr, "GIO did not hear of %s for %s\n", desktopId.c_str(), scheme.c_str());
        ::dlclose(gio);
    }

    KeptEnvironment environment_;
    std::filesystem::path path_ = place();
    std::string scheme_; ///< that a program was registered for, empty for none
};

} // namespace tests
