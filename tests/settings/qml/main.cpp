#include "settings/model/TouchItem.h"
#include "tests/settings/qml/Bench.h"

#include <QProcess>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

class Setup : public QObject {
    Q_OBJECT

  public:
    Setup() {
        QProcess::execute(QStringLiteral("/usr/bin/python3"),
                          {QStringLiteral(LUMORA_SOURCE "/tests/harness/make_fonts.py"), fonts_.path(),
                           QStringLiteral("many=200"), QStringLiteral("twins"), QStringLiteral("variable"),
                           QStringLiteral("collection"), QStringLiteral("arabic"), QStringLiteral("dumb"),
                           QStringLiteral("tall")});
    }

  public slots:
    void applicationAvailable() { settings::TouchItem::wantEveryMove(); }
    void qmlEngineAvailable(QQmlEngine* engine) {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine->rootContext()->setContextProperty(QStringLiteral("bench"),
                                                  new Bench(fonts_.filePath(QStringLiteral("fonts/")), engine));
    }

  private:
    QTemporaryDir fonts_;
};

QUICK_TEST_MAIN_WITH_SETUP(rows, Setup)

#include "main.moc"
