#pragma once

#include "settings/model/Accessibility.h"
#include "settings/model/TouchItem.h"
#include "tests/settings/qml/Bench.h"

#include <QObject>
#include <QProcess>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTemporaryDir>

/// What the tests in QML find: fonts that are made for them, the bench, and a toolkit set up as the window sets it up.
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
