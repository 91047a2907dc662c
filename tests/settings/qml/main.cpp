#include "tests/settings/qml/Setup.h"

#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

QUICK_TEST_MAIN_WITH_SETUP(rows, Setup)
