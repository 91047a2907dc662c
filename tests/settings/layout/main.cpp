// Opens every page of the application at two widths, and prints what is wrong with how it is laid out, a line each:
//
//     layout_tour ROOT PICTURES TEXT_SIZE
//
// Ends with 0 when there is nothing to print, 1 when there is, 2 when there is a page that cannot be opened. The tweak
// is whichever has the ports.
#include "platform/foundation/DeviceRoot.h"
#include "settings/app/Pictures.h"
#include "settings/host/Host.h"
#include "tests/settings/layout/LayoutCheck.h"

#include <QAccessible>
#include <QFont>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QtQml/qqmlextensionplugin.h>

#include <iostream>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

namespace {

class LayoutTour : public settings::Pictures {
  public:
    using Pictures::Pictures;
    [[nodiscard]] bool foundFaults() const { return foundFaults_; }

  protected:
    void takePictures(const std::string& name) override {
        takePicture(name, false);
        for (const std::string& fault : tests::layoutFaults(*window().contentItem())) {
            foundFaults_ = true;
            std::cout << name << "-" << window().width() << ": " << fault << std::endl;
        }
    }

  private:
    bool foundFaults_ = false;
};

int fail(const std::string& why) {
    std::cerr << "layout_tour: " << why << std::endl;
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) return fail("takes a device root, a folder and a text size");
    platform::setDeviceRoot(argv[1]);
    QGuiApplication application(argc, argv);
    QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
    QAccessible::setActive(true);
    auto& shell = *new settings::Shell; // never destroyed, as the main thread reports to it
    shell.setTextSize(std::atoi(argv[3]));
    const platform::CGSize size{320, 1200};
    shell.launch({settings::standardBundle(), {}, settings::contentSizeOf(size)},
                 [](const std::string& why) { QCoreApplication::exit(fail(why)); });
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.setInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(&shell)},
                                 {QStringLiteral("width"), size.width},
                                 {QStringLiteral("height"), size.height}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Lumora/Main.qml")));
    auto* window = engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    if (!window) return fail("the window's own files cannot be loaded");
    LayoutTour tour(shell, *window, std::chrono::seconds(60));
    const auto done = tour.tour(argv[2], {320, 390});
    // Without an end of threads and objects, as the application itself.
    std::cout.flush();
    std::_Exit(!done ? fail(done.error()) : tour.foundFaults() ? 1 : 0);
}
