#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

namespace lumora {

/// The commands that look back at the settings or set them back: history, undo, at, restore and reset. Each has a file of
/// its own, and gives the exit status.
struct HistoryWish {
    std::string key;
    std::string since;
    bool json = false;
    bool clear = false;
};
[[nodiscard]] int showHistory(const HistoryWish& wish);
/// The change "-N" is the last but N - 1, an empty text the last one, and anything else a revision.
[[nodiscard]] int undoChange(const std::string& change);
[[nodiscard]] int showSettingsAt(const std::string& time);
[[nodiscard]] int restoreSettings(const std::string& timeOrRevision, bool dryRun);
[[nodiscard]] int resetSettings(const std::vector<std::string>& keys, bool all);

/// Their place on the command line.
class PastCommands {
  public:
    /// Takes what the chosen command does.
    using Choose = std::function<void(std::function<int()> action)>;

    void addTo(CLI::App& app, const Choose& choose);

  private:
    HistoryWish history_;
    std::string change_;
    std::vector<std::string> time_;
    std::vector<std::string> keys_;
    bool dryRun_ = false;
    bool all_ = false;
};

} // namespace lumora
