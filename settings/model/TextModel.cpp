#include "settings/model/TextModel.h"

#include <string_view>
#include <utility>

namespace settings {

namespace {

/// In bytes: a few screens of text, which are laid out in a moment.
constexpr std::size_t kLongestPiece = 8192;

/// How long the first piece is: up to its last line break, or else its last space, or else its last character.
std::size_t lengthOfPiece(std::string_view text) {
    if (text.size() <= kLongestPiece) return text.size();
    for (const char end : {'\n', ' '})
        if (const auto last = text.rfind(end, kLongestPiece - 1); last != std::string_view::npos) return last + 1;
    std::size_t length = kLongestPiece;
    while (length > 1 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80)
        --length;
    return length;
}

} // namespace

TextModel::TextModel(std::shared_ptr<const TextSnapshot> text, QObject* parent)
    : QObject(parent), text_(std::move(text)) {
    cut();
}

void TextModel::read(std::shared_ptr<const TextSnapshot> text) {
    const bool same = *text == *text_;
    text_ = std::move(text);
    if (same) return;
    cut();
    emit changed();
}

QString TextModel::piece(int index) const {
    const auto at = static_cast<std::size_t>(index);
    if (index < 0 || at >= pieces_.size()) return {};
    const std::string_view text = *text_->text;
    const bool last = at + 1 == pieces_.size();
    std::string_view piece = text.substr(pieces_[at], last ? std::string_view::npos : pieces_[at + 1] - pieces_[at]);
    // The next piece begins on a new line anyway.
    if (!last && piece.ends_with('\n')) piece.remove_suffix(piece.ends_with("\r\n") ? 2 : 1);
    return QString::fromUtf8(piece.data(), static_cast<qsizetype>(piece.size()));
}

void TextModel::cut() {
    const std::string_view text = *text_->text;
    pieces_.assign(1, 0);
    for (std::size_t at = lengthOfPiece(text); at < text.size(); at += lengthOfPiece(text.substr(at)))
        pieces_.push_back(at);
}

} // namespace settings
