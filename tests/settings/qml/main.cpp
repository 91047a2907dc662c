#include "settings/model/Accessibility.h"
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
        const QString makeFonts = LUMORA_SOURCE "/tests/harness/make_fonts.py";
        QProcess::execute("/usr/bin/python3", {makeFonts, fonts_.path(), "many=200", "twins", "variable", "collection",
                                               "arabic", "dumb", "tall"});
    }

  public slots:
    void applicationAvailable() {
        settings::TouchItem::wantEveryMove();
        settings::completeAccessibility();
    }
    void qmlEngineAvailable(QQmlEngine* engine) {
        engine->addImportPath("qrc:/qt/qml");
        engine->rootContext()->setContextProperty("bench", new Bench(fonts_.filePath("fonts/"), engine));
    }

  private:
    QTemporaryDir fonts_;
};

QUICK_TEST_MAIN_WITH_SETUP(rows, Setup)

#include "main.moc"
