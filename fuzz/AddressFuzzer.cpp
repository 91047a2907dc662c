// Any text is an address to open or is none, and is a list of mail addresses or is none. No mail address holds what
// could end it early, in a header or on a command line: the list of those that were found reads as the same ones.

#include "Fuzzer.h"

#include "platform/desktop/MessageWriter.h"
#include "platform/services/NSURL.h"

#include <algorithm>
#include <glib.h>

using fuzz::require;
using platform::mailAddressesIn;
using platform::NSURL;

namespace {

bool isPlain(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char letter) { return letter > ' ' && letter < 127; });
}

void readUrl(const std::string& text) {
    const auto url = NSURL::URLWithString(text);
    if (!url) return;
    ++fuzz::taken;
    const std::string& scheme = url->scheme();
    require(url->absoluteString() == text && isPlain(text) && !scheme.empty());
    require(text.size() > scheme.size() && text[scheme.size()] == ':');
    require(g_ascii_strncasecmp(text.c_str(), scheme.c_str(), scheme.size()) == 0);
    require(std::none_of(scheme.begin(), scheme.end(), [](char letter) { return g_ascii_isupper(letter); }));
}

void readMailAddresses(const std::string& text) {
    const auto addresses = mailAddressesIn(text);
    if (!addresses) return;
    std::string list;
    for (const std::string& address : addresses.value()) {
        require(isPlain(address) && std::count(address.begin(), address.end(), '@') == 1);
        list += (list.empty() ? "" : ", ") + address;
    }
    const auto again = mailAddressesIn(list);
    require(again && again.value() == addresses.value());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(fuzz::textOf(bytes, size));
    readUrl(text);
    readMailAddresses(text);
    return 0;
}
