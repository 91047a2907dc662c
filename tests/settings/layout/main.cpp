// Opens every page of the application in several sizes of the window, goes through it by Tab, and prints what is wrong
// with how it is laid out, a line each, and which links open nothing. Saves pictures of such pages:
//
//     layout_tour ROOT PICTURES TEXT_SIZE [contrast]
//
// With the last word, it looks at what stands out from its ground instead, light and dark, pressed, and with more contrast.
// Ends with 0 when there is nothing to print, 1 when there is, 2 when the tour has come to no end. The tweak is
// whichever has the ports.
#include "platform/foundation/DeviceRoot.h"
#include "platform/services/PictureDecoder.h"
#include "settings/app/Pictures.h"
#include "settings/host/Host.h"
#include "tests/settings/layout/ContrastCheck.h"
#include "tests/settings/layout/Items.h"
#include "tests/settings/layout/LayoutCheck.h"

#include <QAccessible>
#include <QFont>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlProperty>
#include <QtQml/qqmlextensionplugin.h>

#include <iostream>
#include <memory>
#include <set>
#include <string_view>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

namespace {

/// A window in which most of a page is seen at once, and the least that there is.
constexpr int kHigh = 1200;
constexpr int kLow = 400;

/// A tour that prints what is wrong with a page, and keeps a picture of it.
class CheckingTour : public settings::Pictures {
  public:
    CheckingTour(settings::Shell& shell, QQuickWindow& window)
        : Pictures(shell, window, std::chrono::seconds(60),
                   [](const std::string& why) {
                       std::cerr << why << std::endl;
                       std::_Exit(1);
                   }),
          shell_(shell) {}
    [[nodiscard]] bool foundFaults() const { return foundFaults_; }

  protected:
    void complain(const std::string& name, const std::vector<std::string>& faults) {
        for (const std::string& fault : faults) {
            foundFaults_ = true;
            std::cout << name << "-" << window().width() << "x" << window().height() << ": " << fault << std::endl;
        }
        if (!faults.empty()) takePicture(name + "-" + std::to_string(window().height()), shell_.dark());
    }
    [[nodiscard]] settings::Shell& shell() { return shell_; }

  private:
    settings::Shell& shell_;
    bool foundFaults_ = false;
};

class ContrastTour : public CheckingTour {
  public:
    using CheckingTour::CheckingTour;

  protected:
    void takePictures(const std::string& name) override {
        if (name.starts_with("ColorPickerController")) return; // whose colours are not the window's own
        std::cerr << "looked at " << name << "-" << window().width() << std::endl;
        const bool usual = shell().moreContrast();
        for (const bool more : {false, true}) {
            shell().setMoreContrast(more);
            for (const bool dark : {false, true}) {
                shell().setDark(dark);
                const std::string state = name + (more ? "-more" : "") + (dark ? "-dark" : "-light");
                const tests::Contrast least = more ? tests::Contrast{7, 4.5, 3} : tests::Contrast{4.5, 3, 3};
                look(state, least);
                press(*window().contentItem(), true);
                look(state + "-pressed", least);
                press(*window().contentItem(), false);
            }
        }
        shell().setMoreContrast(usual);
    }

  private:
    void look(const std::string& name, tests::Contrast least) {
        const QImage picture = drawn();
        complain(name, tests::contrastFaults(*window().contentItem(), picture, least));
    }

    static void press(const QQuickItem& item, bool down) {
        for (QQuickItem* child : item.childItems()) {
            if (tests::isA(*child, "TappableRow")) {
                QQmlProperty pressed(child, "down");
                down ? void(pressed.write(true)) : void(pressed.reset());
            }
            press(*child, down);
        }
    }
};

class LayoutTour : public CheckingTour {
  public:
    using CheckingTour::CheckingTour;

  protected:
    void takePictures(const std::string& name) override {
        std::cerr << "looked at " << name << "-" << window().width() << std::endl;
        (void)window().grabWindow(); // by then everything is in its place
        complain(name, tests::layoutFaults(*window().contentItem()));
        if (name.ends_with("-end")) return; // scrolled by nobody who has the focus
        if (window().height() == kHigh)
            compareSizes(name);
        else
            goThroughByTab(name);
        if (name == "Composer") visitComposerStates();
    }
    /// Pages of strange plug-ins have a link to no page, and are to open all the same.
    void missPage(const std::string& name, const settings::RowSnapshot& link) override {
        if (link.detail != "NoSuchPage") complain(name, {"the link to " + link.detail + " opens nothing"});
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
    const bool ofContrast = argc == 5 && std::string_view(argv[4]) == "contrast";
    if (argc != 4 && !ofContrast) return fail("takes a device root, a folder, a text size and perhaps what to look at");
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
    const std::vector<QSize> sizes = ofContrast ? std::vector<QSize>{{320, 844}, {390, 844}}
                                                : std::vector<QSize>{{320, kHigh}, {390, 568}, {320, kLow}};
    const std::unique_ptr<CheckingTour> tour = ofContrast
                                                   ? std::unique_ptr<CheckingTour>(new ContrastTour(shell, *window))
                                                   : std::make_unique<LayoutTour>(shell, *window);
    const auto done = tour->tour(argv[2], sizes);
    // Without an end of threads and objects, as the application itself.
    std::cout.flush();
    std::_Exit(!done ? fail(done.error()) : tour->foundFaults() ? 1 : 0);
}
