#pragma once

#include <cstdlib>
#include <map>
#include <string>
#include <unistd.h>

namespace tests {

/// Puts each variable of the environment back as it was, whatever is set meanwhile.
class KeptEnvironment {
  public:
    KeptEnvironment() = default;
    ~KeptEnvironment() {
        // Threads may be reading the environment, so what has not changed is left alone.
        const Variables now = variables();
        for (const auto& [name, value] : now)
            if (!kept_.contains(name)) ::unsetenv(name.c_str());
        for (const auto& [name, value] : kept_)
            if (!now.contains(name) || now.at(name) != value) ::setenv(name.c_str(), value.c_str(), 1);
    }
    KeptEnvironment(const KeptEnvironment&) = delete;
    KeptEnvironment& operator=(const KeptEnvironment&) = delete;

  private:
    using Variables = std::map<std::string, std::string>;

    static Variables variables() {
        Variables all;
        for (char** variable = environ; *variable != nullptr; ++variable) {
            const std::string text = *variable;
            all.emplace(text.substr(0, text.find('=')), text.substr(text.find('=') + 1));
        }
        return all;
    }

    const Variables kept_ = variables();
};

} // namespace tests
