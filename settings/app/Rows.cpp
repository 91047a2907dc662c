#include "settings/app/Application.h"
#include "settings/host/Host.h"
#include "settings/host/RowsDocument.h"
#include "tools/json/Json.h"

#include <future>
#include <iostream>

namespace settings {

using platform::Result;

namespace {

/// What the main thread leaves for the one that waits. Shared, because a blocked main thread outlives the waiting.
struct Page {
    std::shared_ptr<const PageSnapshot> last; ///< main thread only
    std::promise<Result<std::string>> written;
};

int complain(const std::string& why) {
    std::cerr << "lumora-settings: " << why << '\n';
    return 1;
}

} // namespace

int printRows(const Options& options) {
    const auto page = std::make_shared<Page>();
    auto& host = *new Host([page](const StackSnapshot& stack) {
        if (!stack.pages.empty()) page->last = stack.pages.back();
    });
    host.launch({options.bundle.value_or(standardBundle()), *options.rows, contentSizeOf(options.size)},
                [page](const Result<bool>& opened) {
                    page->written.set_value(opened ? lumora::writeJson(rowsDocument(*page->last))
                                                   : Result<std::string>::failure(opened.error()));
                });
    auto written = page->written.get_future();
    if (written.wait_for(std::chrono::duration<double>(options.timeout)) != std::future_status::ready)
        return complain("timed out waiting for the tweak to answer \"requestTweakSettings\"");
    const Result<std::string> text = written.get();
    if (!text) return complain(text.error());
    std::cout << text.value() << std::endl;
    return std::cout ? 0 : complain("cannot write to standard output");
}

} // namespace settings
