#pragma once

#include "settings/host/Snapshot.h"

#include <QObject>
#include <QRectF>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <utility>

namespace settings {

/// A page's text, as QML draws it. GUI thread.
class TextModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Texts come from snapshots")

    Q_PROPERTY(QRectF frame READ frame NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(double size READ size NOTIFY changed)
    Q_PROPERTY(bool selectable READ isSelectable NOTIFY changed)

  public:
    TextModel(std::shared_ptr<const TextSnapshot> text, QObject* parent) : QObject(parent), text_(std::move(text)) {}

    [[nodiscard]] QRectF frame() const {
        const auto& [origin, size] = text_->frame;
        return {origin.x, origin.y, size.width, size.height};
    }
    [[nodiscard]] QString text() const { return QString::fromStdString(text_->text); }
    /// Of the letters, in points of the page.
    [[nodiscard]] double size() const { return text_->font->pointSize(); }
    [[nodiscard]] bool isSelectable() const { return text_->selectable; }

    [[nodiscard]] std::uint64_t id() const { return text_->id; }
    /// Takes up a newer snapshot of the same text.
    void read(std::shared_ptr<const TextSnapshot> text) {
        const bool same = *text == *text_;
        text_ = std::move(text);
        if (!same) emit changed();
    }

  signals:
    void changed();

  private:
    std::shared_ptr<const TextSnapshot> text_;
};

} // namespace settings
