#include "search/FoldedTexts.h"

#include "search/Folding.h"

#include <algorithm>

namespace search {
namespace {

Place append(std::string& all, std::string_view text) {
    std::string folded = fold(text);
    std::ranges::replace(folded, kBetweenTexts, ' ');
    const auto begin = static_cast<std::uint32_t>(all.size());
    all += folded;
    return {begin, static_cast<std::uint32_t>(folded.size())};
}

template<class Texts>
Place appendAll(std::string& all, const Texts& texts) {
    const auto begin = static_cast<std::uint32_t>(all.size());
    for (const auto& text : texts) {
        if (text.empty()) continue;
        if (all.size() > begin) all += kBetweenTexts;
        append(all, text);
    }
    return {begin, static_cast<std::uint32_t>(all.size() - begin)};
}

} // namespace

std::vector<std::string_view> restOf(const Entry& entry) {
    std::vector<std::string_view> texts{entry.placeholder};
    texts.insert(texts.end(), entry.options.begin(), entry.options.end());
    texts.insert(texts.end(), {entry.header, entry.footer, entry.name, entry.identifier});
    return texts;
}

FoldedTexts foldAll(const std::vector<Page>& pages, const std::vector<Entry>& entries) {
    FoldedTexts texts;
    texts.pages.reserve(pages.size());
    texts.entries.reserve(entries.size());
    for (const Page& page : pages) {
        const Place title = append(texts.all, page.title);
        const std::uint64_t before = page.from ? texts.pages[*page.from].letters : 0;
        texts.pages.push_back({title, before | lettersOf(texts.text(title))});
    }
    for (const Entry& entry : entries) {
        FoldedTexts::OfEntry folded;
        folded.title = append(texts.all, entry.title);
        folded.rest = appendAll(texts.all, restOf(entry));
        folded.words = appendAll(texts.all, entry.words);
        folded.letters = texts.pages[entry.page].letters | lettersOf(texts.text(folded.title)) |
                         lettersOf(texts.text(folded.rest)) | lettersOf(texts.text(folded.words));
        texts.entries.push_back(folded);
    }
    return texts;
}

} // namespace search
