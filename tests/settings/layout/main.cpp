// Opens every page of the application in several sizes of the window, goes through it by Tab, and prints what is wrong
// with how it is laid out, a line each, and which links open nothing. Saves pictures of such pages:
//
//     layout_tour ROOT PICTURES TEXT_SIZE [turned]
//
// If the window is to be turned, each page is looked at in many more sizes, which the window takes while it is open.
// Ends with 0 when there is nothing to print, 1 when there is, 2 when the tour has come to no end. The tweak is
// whichever has the ports.
#include "platform/foundation/DeviceRoot.h"
#include "platform/services/PictureDecoder.h"
#include "settings/app/Pictures.h"
#include "settings/host/Host.h"
#include "tests/settings/layout/LayoutCheck.h"

#include <QAccessible>
#include <QFont>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QtQml/qqmlextensionplugin.h>

#include <array>
#include <iostream>
#include <memory>
#include <set>
#include <string_view>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

namespace {

/// A window in which most of a page is seen at once, and the least that there is.
constexpr int kHigh = 1200;
constexpr int kLow = 400;

/// From the smallest window to a whole screen, upright and across by turns.
constexpr std::array<QSize, 12> kTurns{{{320, 400},
                                        {1920, 1080},
                                        {390, 844},
                                        {844, 400},
                                        {320, 1080},
                                        {568, 400},
                                        {400, 1024},
                                        {1024, 400},
                                        {768, 1024},
                                        {1366, 768},
                                        {320, 568},
                                        {1024, 768}}};

class Tour : public settings::Pictures {
  public:
    Tour(settings::Shell& shell, QQuickWindow& window)
        : Pictures(shell, window, std::chrono::seconds(60),
                   [](const std::string& why) {
                       std::cerr << why << std::endl;
                       std::_Exit(1);
                   }),
          shell_(shell) {}
    [[nodiscard]] bool foundFaults() const { return foundFaults_; }

  protected:
    /// Pages of strange plug-ins have a link to no page, and are to open all the same.
    void missPage(const std::string& name, const settings::RowSnapshot& link) override {
        if (link.detail != "NoSuchPage") complain(name, {"the link to " + link.detail + " opens nothing"});
    }
    void complain(const std::string& name, const std::vector<std::string>& faults) {
        for (const std::string& fault : faults) {
            foundFaults_ = true;
            std::cout << name << "-" << window().width() << "x" << window().height() << ": " << fault << std::endl;
        }
        if (!faults.empty()) takePicture(name + "-" + std::to_string(window().height()), false);
    }
    [[nodiscard]] settings::Shell& shell() const { return shell_; }

  private:
    settings::Shell& shell_;
    bool foundFaults_ = false;
};

/// Turns the window on each page.
class TurningTour : public Tour {
  public:
    TurningTour(settings::Shell& shell, QQuickWindow& window) : Tour(shell, window) {
        ::QObject::connect(&shell, &settings::Shell::aboutToAppearAnew, &window, [this] { ++appearances_; });
    }

  protected:
    void takePictures(const std::string& name) override {
        if (name.ends_with("-end") || name == "Composer" || name.starts_with("Waiting")) return;
        std::cerr << "turned " << name << std::endl;
        const QSize before = window().size();
        const std::size_t elements = shell().topPage()->elements.size();
        for (const QSize size : kTurns) {
            turn(size);
            (void)window().grabWindow(); // by then everything is in its place
            complain(name, tests::layoutFaults(*window().contentItem()));
            complain(name, tests::reachFaults(*window().contentItem()));
            if (shell().topPage()->elements.size() != elements) complain(name, {"has elements that no touch reaches"});
        }
        turn(before);
    }

  private:
    void turn(QSize size) {
        const int appearances = appearances_;
        if (window().size() == size) return;
        resize(size);
        if (!shell().topPage()->keepsPlaces) {
            if (appearances_ != appearances) complain("a page that follows", {"appears anew"});
            return;
        }
        waitUntil([&] { return appearances_ != appearances; }, [] { return "the page to appear anew"; });
        perform([](settings::Navigation&) {});
    }

    int appearances_ = 0;
};

class LayoutTour : public Tour {
  public:
    using Tour::Tour;

  protected:
    void takePictures(const std::string& name) override {
        std::cerr << "looked at " << name << "-" << window().width() << std::endl;
        (void)window().grabWindow(); // by then everything is in its place
        complain(name, tests::layoutFaults(*window().contentItem()));
        if (name.ends_with("-end") || name.ends_with("-menu")) return; // by nobody who has the focus
        if (window().height() == kHigh)
            compareSizes(name);
        else
            goThroughByTab(name);
        if (name == "Composer") visitComposerStates();
    }

  private:
    void visitComposerStates() {
        const QString words = "nothing is sent to an address like this, ";
        for (const QString& problem :
             {QString("No way."), words, words.repeated(50), QString(3000, QLatin1Char('x'))}) {
            settings::ComposerSnapshot composer = *shell().topPage()->composer;
            composer.problem = problem.toStdString();
            present(std::make_shared<const settings::ComposerSnapshot>(composer));
            takePictures("Composer-problem");
        }
        QQuickItem* sheet = composer(*window().contentItem());
        if (!sheet) return complain("Composer", {"cannot be found"});
        QMetaObject::invokeMethod(sheet, "ask");
        takePictures("Composer-asking");
        QMetaObject::invokeMethod(sheet, "goOn");
    }

    static QQuickItem* composer(QQuickItem& item) {
        if (QByteArrayView(item.metaObject()->className()).startsWith("Composer_")) return &item;
        const QList<QQuickItem*> children = item.childItems();
        for (QQuickItem* child : children)
            if (QQuickItem* found = composer(*child)) return found;
        return nullptr;
    }

    /// Larger texts are nowhere smaller than usual ones.
    void compareSizes(const std::string& name) {
        const int size = shell().textSize();
        if (size <= 100) return;
        shell().setTextSize(100);
        QCoreApplication::processEvents();
        const auto usual = tests::textSizes(*window().contentItem());
        shell().setTextSize(size);
        QCoreApplication::processEvents();
        complain(name, tests::smallerThan(usual, *window().contentItem()));
    }

    void goThroughByTab(const std::string& name) {
        QQuickItem* before = window().activeFocusItem();
        complain(name, tests::focusFaults(*window().contentItem()));
        std::set<const QQuickItem*> seen;
        for (QQuickItem* item = window().contentItem()->nextItemInFocusChain(true); seen.insert(item).second;
             item = item->nextItemInFocusChain(true)) {
            item->forceActiveFocus(Qt::TabFocusReason);
            complain(name, tests::focusFaults(*window().contentItem()));
        }
        if (before) before->forceActiveFocus(Qt::OtherFocusReason);
    }
};

int fail(const std::string& why) {
    std::cerr << "layout_tour: " << why << std::endl;
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    platform::PicturePatience::makeEndless(); // so that a row has its icon in each picture
    const bool turned = argc == 5 && std::string_view(argv[4]) == "turned";
    if (argc != 4 && !turned) return fail("takes a device root, a folder and a text size, and how the window is");
    platform::setDeviceRoot(argv[1]);
    QGuiApplication application(argc, argv);
    QGuiApplication::setFont(QFont("Inter"));
    QAccessible::setActive(true);
    auto& shell = *new settings::Shell; // never destroyed, as the main thread reports to it
    shell.setTextSize(std::atoi(argv[3]));
    const platform::CGSize size{320, kHigh};
    shell.launch({platform::standardBundle(), {}, settings::contentSizeOf(size)},
                 [](const std::string& why) { QCoreApplication::exit(fail(why)); });
    QQmlApplicationEngine engine;
    engine.addImportPath("qrc:/qt/qml");
    engine.setInitialProperties(
        {{"shell", QVariant::fromValue(&shell)}, {"width", size.width}, {"height", size.height}});
    engine.load(QUrl("qrc:/qt/qml/Lumora/Main.qml"));
    auto* window = engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    if (!window) return fail("the window's own files cannot be loaded");
    std::unique_ptr<Tour> tour;
    if (turned)
        tour = std::make_unique<TurningTour>(shell, *window);
    else
        tour = std::make_unique<LayoutTour>(shell, *window);
    std::vector<QSize> sizes{{320, kHigh}, {390, 568}, {320, kLow}};
    if (turned) sizes = {{390, 844}};
    const auto done = tour->tour(argv[2], sizes);
    // Without an end of threads and objects, as the application itself.
    std::cout.flush();
    std::_Exit(!done ? fail(done.error()) : tour->foundFaults() ? 1 : 0);
}
