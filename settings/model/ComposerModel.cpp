#include "settings/model/ComposerModel.h"

#include <QLocale>
#include <QVariantMap>

#include <utility>

namespace settings {

ComposerModel::ComposerModel(SendEvent send, Snapshot composer, QObject* parent)
    : QObject(parent), send_(std::move(send)), composer_(std::move(composer)) {
}

QVariantList ComposerModel::attachments() const {
    QVariantList list;
    for (const AttachmentSnapshot& attachment : composer_->attachments) {
        const int digits = attachment.size < 1'000'000 ? 0 : 1;
        const QString size = QLocale().formattedDataSize(qint64(attachment.size), digits, QLocale::DataSizeSIFormat);
        list.push_back(QVariantMap{{QStringLiteral("name"), QString::fromStdString(attachment.name)},
                                   {QStringLiteral("size"), size}});
    }
    return list;
}

void ComposerModel::read(const Snapshot& composer) {
    if (composer == composer_) return;
    auto newer = std::make_shared<ComposerSnapshot>(*composer);
    newer->text = composer_->text;
    composer_ = std::move(newer);
    emit changed();
}

void ComposerModel::act(ComposerAction action, const QString& to, const QString& subject, const QString& body) {
    send_(Composed{composer_->id, action, {to.toStdString(), subject.toStdString(), body.toStdString()}}, {});
}

} // namespace settings
