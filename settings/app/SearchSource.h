#pragma once

#ifndef Q_MOC_RUN // which cannot read concepts
#include "search/IndexChild.h"
#endif
#include "settings/model/SearchModel.h"

#include <QObject>
#include <QTimer>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace settings {

/// Brings a search what it looks through: the index of the disk at once, a newer one where that is out of date, made once
/// nobody has touched the window for a second or somebody searches; and the settings whenever somebody comes to search.
/// Nothing of it is waited for, and no page is asked. GUI thread.
class SearchSource : public QObject {
  public:
    SearchSource(SearchModel& model, search::IndexOrder order, QObject* parent);
    ~SearchSource() override;

    /// Begins to wait until nobody touches that window.
    void awaitRest(QObject& window);
    /// Whether index and settings have come since somebody came to search.
    [[nodiscard]] bool isComplete() const { return hasIndex_ && hasSettings_; }
    /// Ends the making of an index, which begins no more. Waits some hundredths of a second for it.
    void stop();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void run(const std::stop_token& stop);
    void work(const std::stop_token& stop);
    void hasten();
    void askForSettings();
    void bring(search::Index index, bool last);

    SearchModel& model_;
    search::IndexOrder order_;
    QTimer rest_;
    bool hasIndex_ = false;
    bool hasSettings_ = false;
    std::mutex mutex_;
    std::condition_variable_any hastened_;
    bool isWanted_ = false; ///< guarded by the mutex
    std::jthread worker_;   ///< last, as it uses the others
};

} // namespace settings
