#pragma once

#include "settings/host/Snapshot.h"

#include <QObject>
#include <QRectF>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace settings {

/// A page's text, as QML draws it. GUI thread.
///
/// It comes in pieces, one below the other, so that only what is seen has to be laid out, however long the text is. A
/// short text is one piece.
class TextModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Texts come from snapshots")

    Q_PROPERTY(QRectF frame READ frame NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(int pieceCount READ pieceCount NOTIFY changed)
    Q_PROPERTY(double size READ size NOTIFY changed)
    Q_PROPERTY(bool selectable READ isSelectable NOTIFY changed)

  public:
    TextModel(std::shared_ptr<const TextSnapshot> text, QObject* parent);

    [[nodiscard]] QRectF frame() const {
        const auto& [origin, size] = text_->frame;
        return {origin.x, origin.y, size.width, size.height};
    }
    [[nodiscard]] QString text() const { return QString::fromStdString(*text_->text); }
    [[nodiscard]] int pieceCount() const { return static_cast<int>(pieces_.size()); }
    /// One piece, without the line break that ends it; empty where there is none. A line that is too long for a piece
    /// continues in the next.
    [[nodiscard]] Q_INVOKABLE QString piece(int index) const;
    /// The size of the letters, in points.
    [[nodiscard]] double size() const { return text_->font->pointSize(); }
    [[nodiscard]] bool isSelectable() const { return text_->selectable; }

    [[nodiscard]] std::uint64_t id() const { return text_->id; }
    /// Takes up a newer snapshot of the same text.
    void read(std::shared_ptr<const TextSnapshot> text);

  signals:
    void changed();

  private:
    void cut();

    std::shared_ptr<const TextSnapshot> text_;
    std::vector<std::size_t> pieces_; ///< where each begins, in bytes
};

} // namespace settings
