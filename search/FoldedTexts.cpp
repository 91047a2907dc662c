#include "search/FoldedTexts.h"

#include "search/Folding.h"

#include <unordered_map>
#include <utility>

namespace search {
namespace {

using Place = FoldedTexts::Place;

/// Numbers the words of texts.
class TextFolder {
  public:
    template<class Texts>
    Place add(const Texts& texts) {
        const auto begin = static_cast<std::uint32_t>(folded_.all.size());
        for (const auto& text : texts)
            addText(text);
        return {begin, static_cast<std::uint32_t>(folded_.all.size()) - begin};
    }
    [[nodiscard]] std::uint64_t lettersAt(Place place) const {
        std::uint64_t letters = 0;
        for (const FoldedTexts::Word word : folded_.wordsAt(place))
            letters |= folded_.letters[word.number];
        return letters;
    }
    [[nodiscard]] std::string textAt(Place place) const {
        std::string text;
        for (const FoldedTexts::Word word : folded_.wordsAt(place))
            text += folded_.known[word.number] + " ";
        return text;
    }
    FoldedTexts& folded() { return folded_; }

  private:
    void addText(std::string_view text) {
        const std::string folded = fold(text);
        bool isFirst = true;
        for (const std::string_view word : wordsOf(folded)) {
            const auto [found, isNew] = numbers_.try_emplace(std::string(word), folded_.known.size());
            if (isNew) {
                folded_.known.emplace_back(word);
                folded_.letters.push_back(lettersOf(word));
            }
            folded_.all.push_back({static_cast<std::uint32_t>(found->second) & 0x7FFFFFFFU, isFirst ? 1U : 0U});
            isFirst = false;
        }
    }

    FoldedTexts folded_;
    std::unordered_map<std::string, std::size_t> numbers_;
};

} // namespace

std::vector<std::string_view> restOf(const Entry& entry) {
    std::vector<std::string_view> texts{entry.placeholder};
    texts.insert(texts.end(), entry.options.begin(), entry.options.end());
    texts.insert(texts.end(), {entry.header, entry.footer, entry.name, entry.identifier});
    return texts;
}

FoldedTexts foldAll(const std::vector<Page>& pages, const std::vector<Entry>& entries) {
    TextFolder folder;
    FoldedTexts& folded = folder.folded();
    folded.pages.reserve(pages.size());
    folded.entries.reserve(entries.size());
    for (const Page& page : pages) {
        const Place title = folder.add(std::span(&page.title, 1));
        const std::uint64_t before = page.from ? folded.pages[*page.from].letters : 0;
        folded.pages.push_back({title, before | folder.lettersAt(title)});
    }
    for (const Entry& entry : entries) {
        const Place title = folder.add(std::span(&entry.title, 1));
        const Place rest = folder.add(restOf(entry));
        const Place words = folder.add(entry.words);
        folded.entries.push_back({folded.pages[entry.page].letters | folder.lettersAt(title) | folder.lettersAt(rest) |
                                      folder.lettersAt(words),
                                  static_cast<std::uint32_t>(entry.page), entry.kind, title, rest, words,
                                  lettersAndDigitsOf(folder.textAt(title))});
    }
    return std::move(folded);
}

} // namespace search
