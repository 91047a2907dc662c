#include "settings/app/Application.h"

#include "platform/foundation/DeviceRoot.h"
#include "programs/Program.h"
#include "settings/host/Host.h"
#include "settings/host/RowsDocument.h"
#include "json/Json.h"

#include <future>
#include <iostream>
#include <limits>

namespace settings {

using platform::Result;
using programs::complain;

namespace {

/// What the main thread leaves for the waiting thread. Shared, because a blocked main thread outlives the wait.
struct Page {
    std::shared_ptr<const PageSnapshot> last; ///< main thread only
    std::promise<Result<std::string>> written;
};

} // namespace

int printRows(const Options& options) {
    const auto page = std::make_shared<Page>();
    auto& host = *new Host([page](const StackSnapshot& stack) {
        if (!stack.pages.empty()) page->last = stack.pages.back();
    });
    host.launch({options.bundle.value_or(platform::standardBundle()), *options.rows,
                 contentSizeOf(options.size.value_or(kUsualSize))},
                [page, &host](const Result<void>& opened) {
                    if (!opened) return page->written.set_value(Result<std::string>::failure(opened.error()));
                    host.post([page](Navigation& navigation) {
                        const bool shown = navigation.run([page](Navigation& pages) {
                            // All rows of a table exist once the whole table is in view.
                            constexpr double everywhere = std::numeric_limits<double>::infinity();
                            pages.handle(page->last->id, TableScrolled{{0, everywhere, {}}});
                            page->written.set_value(lumora::writeJson(rowsDocument(*page->last)));
                        });
                        if (!shown)
                            page->written.set_value(
                                Result<std::string>::failure(page->last->className + " does not show its rows"));
                    });
                });
    auto written = page->written.get_future();
    if (written.wait_for(std::chrono::duration<double>(options.timeout)) != std::future_status::ready)
        return complain("timed out waiting for " + whatBlocks(*options.rows));
    const Result<std::string> text = written.get();
    if (!text) return complain(text.error());
    std::cout << text.value() << std::endl;
    return std::cout ? 0 : complain("cannot write to standard output");
}

} // namespace settings
