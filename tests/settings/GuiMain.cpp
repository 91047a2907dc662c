// Runs the tests of a program that needs the toolkit's application. There is one for all of them, however often they
// are repeated, since assistive tools are told nothing of a second one; and it goes before what it stands on.

#include <QGuiApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
