#include "search/Search.h"

#include "search/FoldedTexts.h"
#include "search/Folding.h"
#include "search/Matching.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace search {
namespace {

constexpr std::size_t kLongestQuery = 4096;

/// What a word counts where it is found: nowhere, inside, at a word's beginning, at the beginning.
using Points = std::array<int, 4>;
constexpr Points kPointsInTitle{0, 8, 16, 24};
constexpr Points kPointsInPath{0, 4, 8, 12};
constexpr Points kPointsInFirstTitle{0, 1, 1, 1}; // which all paths have
constexpr Points kPointsInRest{0, 2, 4, 6};
constexpr Points kPointsInWords{0, 1, 2, 3};
constexpr int kPointsForWhole = 12;
constexpr int kPointsForBeginning = 4;

/// Whether it is what people look for here. What has a name that somebody else gave it counts half.
constexpr bool isSetting(Kind kind) {
    return kind == Kind::row || kind == Kind::option || kind == Kind::appView;
}

/// A query, and how it is compared.
class Query {
  public:
    Query(const Index& index, std::string_view text, bool forgiving)
        : index_(index), folded_(index.folded()), query_(fold(text)), plain_(lettersAndDigitsOf(query_)),
          forgiving_(forgiving) {
        for (const std::string_view word : wordsOf(query_)) {
            if (std::ranges::find(words_, word, &SoughtWord::text) == words_.end()) words_.emplace_back(word);
        }
        for (const SoughtWord& word : words_)
            letters_ |= word.letters;
        inPath_.assign(folded_.pages.size() * words_.size(), kUnknown);
        for (const SoughtWord& word : words_)
            findInAll(word);
    }

    [[nodiscard]] std::vector<Hit> best(std::size_t most) {
        std::vector<Candidate> found;
        if (words_.empty()) return {};
        for (std::size_t i = 0; i < folded_.entries.size(); ++i)
            if (const int rank = rankOf(folded_.entries[i]); rank > 0)
                found.push_back({-rank, folded_.entries[i].kind, i});
        const auto end = found.begin() + std::ptrdiff_t(std::min(most, found.size()));
        std::ranges::partial_sort(found, end);
        std::vector<Hit> hits;
        for (auto one = found.begin(); one != end; ++one)
            explain(hits.emplace_back(Hit{one->entry, -one->lack, forgiving_}));
        return hits;
    }

  private:
    static constexpr int kUnknown = -1;

    /// The better one is less.
    struct Candidate {
        int lack = 0; ///< the rank's negative
        Kind kind = Kind::row;
        std::size_t entry = 0;
        friend auto operator<=>(const Candidate&, const Candidate&) = default;
    };

    [[nodiscard]] const Entry& entry(const Hit& hit) const { return index_.entries()[hit.entry]; }

    [[nodiscard]] bool canHave(std::uint64_t letters, const SoughtWord& word) const {
        const std::uint64_t missing = word.letters & ~letters;
        return missing == 0 || (forgiving_ && word.forgiving && std::has_single_bit(missing));
    }

    [[nodiscard]] Found found(std::string_view text, const SoughtWord& word) const {
        Found found = findWord(text, word.text);
        if (found.where == Where::nowhere && forgiving_ && word.forgiving) found = findWithMistake(text, word.text);
        return found;
    }
    /// In which of all different words the word is.
    void findInAll(const SoughtWord& word) {
        std::vector<Where>& places = places_.emplace_back();
        places.resize(folded_.known.size(), Where::nowhere);
        for (std::size_t i = 0; i < places.size(); ++i)
            if (canHave(folded_.letters[i], word)) places[i] = found(folded_.known[i], word).where;
    }
    /// What the word with that number counts where it is found best among these.
    [[nodiscard]] int points(const Points& points, FoldedTexts::Place place, std::size_t word) const {
        const std::vector<Where>& places = places_[word];
        Where best = Where::nowhere;
        for (const FoldedTexts::Word each : folded_.wordsAt(place)) {
            Where where = places[each.number];
            if (where == Where::atBeginning && each.isFirst == 0) where = Where::atWord;
            best = std::max(best, where);
        }
        return points[std::size_t(best)];
    }

    /// Of the titles of the page and of those before it.
    int pointsInPath(std::size_t page, std::size_t word) {
        int& known = inPath_[page * words_.size() + word];
        if (known != kUnknown) return known;
        const auto& from = index_.pages()[page].from;
        const int own = points(from ? kPointsInPath : kPointsInFirstTitle, folded_.pages[page].title, word);
        return known = std::max(own, from ? pointsInPath(*from, word) : 0);
    }

    /// 0 unless every word is found, and one of them elsewhere than in the first page's title.
    int rankOf(const FoldedTexts::OfEntry& texts) {
        if (!forgiving_ && (letters_ & ~texts.letters) != 0) return 0;
        int rank = 0;
        bool own = false;
        for (std::size_t i = 0; i < words_.size(); ++i) {
            if (!canHave(texts.letters, words_[i])) return 0;
            int best = points(kPointsInTitle, texts.title, i);
            if (best < kPointsInPath.back()) best = std::max(best, pointsInPath(texts.page, i));
            if (best < kPointsInRest.back()) best = std::max(best, points(kPointsInRest, texts.rest, i));
            if (best < kPointsInWords.back()) best = std::max(best, points(kPointsInWords, texts.words, i));
            if (best == 0) return 0;
            own = own || best > kPointsInFirstTitle.back() || points(kPointsInWords, texts.words, i) > 0;
            rank += best;
        }
        if (!own) return 0;
        rank += pointsForWhole(texts.plainTitle);
        return isSetting(texts.kind) ? rank : std::max(rank / 2, 1);
    }

    /// For a title that is the query, or begins with it.
    [[nodiscard]] int pointsForWhole(const std::string& title) const {
        if (!title.starts_with(plain_)) return 0;
        return title.size() == plain_.size() ? kPointsForWhole : kPointsForBeginning;
    }

    /// Marks the word's best place in a text; false when the text has none.
    bool mark(std::vector<Range>& ranges, const FoldedPlaces& text, const SoughtWord& word) const {
        const Found place = found(text.text, word);
        if (place.where == Where::nowhere) return false;
        const std::size_t begin = text.begins[place.begin];
        const std::size_t end = place.length > 0 ? text.ends[place.begin + place.length - 1] : begin;
        ranges.push_back({begin, end - begin});
        return true;
    }

    static void join(std::vector<Range>& ranges) {
        std::ranges::sort(ranges, {}, &Range::begin);
        std::vector<Range> joined;
        for (const Range& range : ranges) {
            if (joined.empty() || joined.back().begin + joined.back().length < range.begin)
                joined.push_back(range);
            else
                joined.back().length = std::max(joined.back().length, range.begin + range.length - joined.back().begin);
        }
        ranges = std::move(joined);
    }

    void explain(Hit& hit) const {
        const FoldedPlaces title = foldWithPlaces(entry(hit).title);
        std::vector<FoldedPlaces> path;
        for (const std::size_t page : index_.wayTo(entry(hit).page))
            path.push_back(foldWithPlaces(index_.pages()[page].title));
        hit.path.resize(path.size());
        for (const SoughtWord& word : words_) {
            bool marked = mark(hit.title, title, word);
            for (std::size_t i = 0; i < path.size(); ++i)
                marked = mark(hit.path[i], path[i], word) || marked;
            if (!marked && hit.also.empty()) hit.also = otherTextWith(entry(hit), word);
        }
        join(hit.title);
        for (auto& ranges : hit.path)
            join(ranges);
    }

    /// The one in which the word has its best place, of those that are for people.
    [[nodiscard]] std::string otherTextWith(const Entry& entry, const SoughtWord& word) const {
        std::vector<std::string_view> texts = restOf(entry);
        std::erase_if(texts, [&](std::string_view text) { return text == entry.identifier || text == entry.key; });
        texts.insert(texts.end(), entry.words.begin(), entry.words.end());
        std::string_view best;
        Where where = Where::nowhere;
        for (const std::string_view text : texts) {
            const Where here = found(fold(text), word).where;
            if (here > where) best = text;
            where = std::max(where, here);
        }
        return std::string(best);
    }

    const Index& index_;
    const FoldedTexts& folded_;
    std::string query_;
    std::string plain_; ///< its letters and digits
    bool forgiving_;
    std::vector<SoughtWord> words_; ///< the different ones
    std::uint64_t letters_ = 0;
    std::vector<std::vector<Where>> places_; ///< for each word, where it is in each of all different words
    std::vector<int> inPath_;                ///< of each page and word
};

} // namespace

std::vector<Hit> find(const Index& index, std::string_view query, std::size_t most) {
    if (query.size() > kLongestQuery) return {};
    std::vector<Hit> hits = Query(index, query, false).best(most);
    return hits.empty() ? Query(index, query, true).best(most) : hits;
}

} // namespace search
