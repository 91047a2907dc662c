#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <cstddef>
#include <filesystem>
#include <string>

namespace lumora {

/// The rows of all pages that have the words, the best first, as a list of dictionaries: "title", "path" (the titles of
/// the pages to open), "page" (its class), "kind", "row", and of a table "section"; where there is one, "identifier" and
/// "key"; "also" where the words are found in something else, such as another word for the same thing; "similar" where a
/// mistake was forgiven.
///
/// Takes the user's index of all pages; makes that anew if it is out of date, and complains of what it lacks then. An
/// empty root is the program's own.
[[nodiscard]] platform::Result<platform::List> searchSettings(const std::string& words,
                                                              const std::filesystem::path& root, std::size_t most);

/// A line for each result of searchSettings().
[[nodiscard]] std::string resultLines(const platform::List& results);

} // namespace lumora
