#pragma once

#include "settings/host/Event.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace settings {

/// A message that is being composed over a page, as QML draws it. GUI thread.
///
/// Its texts are those that composing began with; QML keeps the edited ones and passes them to each operation.
class ComposerModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Composers come from snapshots")
    Q_PROPERTY(QString to READ to CONSTANT)
    Q_PROPERTY(QString subject READ subject CONSTANT)
    Q_PROPERTY(QString body READ body CONSTANT)
    /// Maps of "name" and "size", which is text for a person to read.
    Q_PROPERTY(QVariantList attachments READ attachments CONSTANT)
    Q_PROPERTY(bool working READ working NOTIFY changed)
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    /// The file of the draft that the message is kept as after a problem; empty for none.
    Q_PROPERTY(QString draft READ draft NOTIFY changed)

  public:
    using Snapshot = std::shared_ptr<const ComposerSnapshot>;
    ComposerModel(SendEvent send, Snapshot composer, QObject* parent);

    [[nodiscard]] std::uint64_t id() const { return composer_->id; }
    [[nodiscard]] QString to() const { return QString::fromStdString(composer_->text.to); }
    [[nodiscard]] QString subject() const { return QString::fromStdString(composer_->text.subject); }
    [[nodiscard]] QString body() const { return QString::fromStdString(composer_->text.body); }
    [[nodiscard]] QVariantList attachments() const;
    [[nodiscard]] bool working() const { return composer_->working; }
    [[nodiscard]] QString problem() const { return QString::fromStdString(composer_->problem); }
    [[nodiscard]] QString draft() const { return QString::fromStdString(composer_->draft); }

    /// Takes up a newer snapshot of the same message, all but its text.
    void read(const Snapshot& composer);
    Q_INVOKABLE void send(const QString& to, const QString& subject, const QString& body) {
        act(ComposerAction::send, to, subject, body);
    }
    Q_INVOKABLE void saveDraft(const QString& to, const QString& subject, const QString& body) {
        act(ComposerAction::save, to, subject, body);
    }
    Q_INVOKABLE void cancel() { act(ComposerAction::cancel, {}, {}, {}); }
    /// For closing the window: the message is kept unless it is being sent.
    Q_INVOKABLE void leave(const QString& to, const QString& subject, const QString& body) {
        act(ComposerAction::leave, to, subject, body);
    }

  signals:
    void changed();

  private:
    void act(ComposerAction action, const QString& to, const QString& subject, const QString& body);
    SendEvent send_;
    Snapshot composer_;
};

} // namespace settings
