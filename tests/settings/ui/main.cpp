#include "tests/settings/ui/Bench.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

class Setup : public QObject {
    Q_OBJECT

  public slots:
    void qmlEngineAvailable(QQmlEngine* engine) {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine->rootContext()->setContextProperty(QStringLiteral("bench"), new Bench(engine));
    }
};

QUICK_TEST_MAIN_WITH_SETUP(rows, Setup)

#include "main.moc"
