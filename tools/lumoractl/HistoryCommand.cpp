#include "tools/lumoractl/Ending.h"
#include "tools/lumoractl/Past.h"
#include "tools/lumoractl/PastCommands.h"

#include "json/Json.h"

#include <algorithm>

using platform::List;
using platform::Result;

namespace lumora {
namespace {

std::string recordLines(const std::vector<ChangeRecord>& records) {
    std::string lines;
    const std::size_t width = records.empty() ? 0 : std::to_string(records.back().revision).size();
    for (const ChangeRecord& record : records) {
        const std::string revision = std::to_string(record.revision);
        lines += std::string(width - std::min(width, revision.size()), ' ') + revision + "  " +
                 localTimeOf(record.time) + "  " + changeText(record) + "\n";
    }
    return lines;
}

} // namespace

int showHistory(const HistoryWish& wish) {
    if (wish.clear) {
        const Result<bool> cleared = clearHistory();
        if (!cleared) return report(cleared.error());
        return cleared.value() ? kDone : report(kNoHistory, kNotOffered);
    }
    Landmark since{Moment::min(), std::nullopt};
    if (!wish.since.empty()) {
        const Result<Landmark> landmark = readLandmark(wish.since);
        if (!landmark) return report(landmark.error(), kWrongUse);
        since = landmark.value();
    }
    auto fetched = fetchHistory();
    if (!fetched) return report(fetched.error());
    if (!fetched.value()) return report(kNoHistory, kNotOffered);
    std::vector<ChangeRecord> records = std::move(fetched).value().value();
    std::erase_if(records, [&](const ChangeRecord& one) {
        const bool isBefore = since.revision ? one.revision <= *since.revision : one.time < since.moment;
        return isBefore || (!wish.key.empty() && one.key != wish.key);
    });
    if (!wish.json) return print(recordLines(records));
    List documents;
    for (const ChangeRecord& record : records)
        documents.emplace_back(documentOf(record));
    const Result<std::string> json = writeJson(documents);
    return json ? print(json.value() + "\n") : report(json.error());
}

} // namespace lumora
