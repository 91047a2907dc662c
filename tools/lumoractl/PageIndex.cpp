#include "tools/lumoractl/PageIndex.h"

#include "tools/lumoractl/Streams.h"

#include "platform/foundation/DeviceRoot.h"
#include "search/IndexChild.h"
#include "search/IndexFile.h"

#include <utility>

using platform::Result;

namespace lumora {

Result<search::Index> currentIndex(const std::filesystem::path& root) {
    using Found = Result<search::Index>;
    search::IndexOrder order;
    order.root = root;
    order.bundle = platform::standardBundle();
    const search::Sources sources = sourcesOf(order);
    auto kept = search::readIndex(indexFile(sources), stampOf(sources));
    if (kept && kept->current) return std::move(kept->index);
    Result<search::MadeIndex> made = search::makeAndKeepIndex(order);
    if (!made && !kept) return Found::failure("there is no index of the pages: " + made.error());
    if (!made) {
        complain("the index of the pages is out of date: " + made.error());
        return std::move(kept->index);
    }
    for (const std::string& missing : made.value().missing)
        complain("left out: " + missing);
    return std::move(made).value().index;
}

std::optional<search::Index> keptIndex() {
    search::IndexOrder order;
    order.bundle = platform::standardBundle();
    auto kept = search::readIndex(indexFile(sourcesOf(order)), {});
    return kept ? std::optional(std::move(kept->index)) : std::nullopt;
}

} // namespace lumora
