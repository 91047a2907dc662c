#pragma once

#include "tests/support/Waiting.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace tests {

/// A user's home of its own for the rest of the test program, which is one test: no program is registered or found but
/// those that the test puts there, and no mail is sent. Gone when the test ends.
class Home {
  public:
    Home() {
        std::string made = std::filesystem::temp_directory_path() / "home-XXXXXX";
        if (::mkdtemp(made.data()) == nullptr) throw std::runtime_error("no home");
        path_ = made;
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
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path drafts() const { return path_ / "data/lumora/drafts"; }

    /// Puts a shell script among the user's programs.
    std::filesystem::path addProgram(const std::string& name, const std::string& script) const {
        const std::filesystem::path file = path_ / "bin" / name;
        std::ofstream(file) << "#!/bin/sh\n" << script << "\n";
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
    void registerFor(const std::string& scheme, const std::string& desktopId, const std::string& exec) const {
        std::ofstream(path_ / "data/applications" / desktopId)
            << "[Desktop Entry]\nType=Application\nName=Test\nExec=" << exec << "\nMimeType=x-scheme-handler/" << scheme
            << ";\n";
        std::ofstream(path_ / "config/mimeapps.list")
            << "[Default Applications]\nx-scheme-handler/" << scheme << "=" << desktopId << "\n";
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
    std::filesystem::path path_;
};

} // namespace tests
