// Opens every page of the application in several sizes of the window, goes through it by Tab, and prints what is wrong
// with how it is laid out, a line each, and which links open nothing. Saves pictures of such pages:
//
//     layout_tour ROOT PICTURES TEXT_SIZE [contrast|turned|targets]
//
// With the last word it looks at something else instead: at what stands out from its ground, in one column and in two,
// light and dark, pressed, and with more contrast; at each page in many more sizes, which the window takes while it is
// open; or at how much room a finger has on all that can be pressed.
// Ends with 0 when there is nothing to print, 1 when there is, 2 when the tour has come to no end. The tweak is
// whichever has the ports.
#include "platform/foundation/DeviceRoot.h"
#include "platform/services/PictureDecoder.h"
#include "settings/app/Pictures.h"
#include "settings/host/Host.h"
#include "settings/model/Panes.h"
#include "tests/settings/layout/ContrastCheck.h"
#include "tests/settings/layout/Items.h"
#include "tests/settings/layout/LayoutCheck.h"
#include "tests/settings/layout/TargetCheck.h"

#include <QAccessible>
#include <QFont>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlProperty>
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
constexpr std::array<QSize, 13> kTurns{{{320, 400},
                                        {844, 320},
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

/// A tour that prints what is wrong with a page, and keeps a picture of it.
class CheckingTour : public settings::Pictures {
  public:
    CheckingTour(settings::Shell& shell, QQuickWindow& window)
        : Pictures(shell, window, std::chrono::seconds(300),
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
    /// Afterwards everything is in its place.
    void drawWhole(const std::string& name) {
        std::cerr << "looked at " << name << "-" << window().width() << std::endl;
        (void)window().grabWindow();
    }
    void complain(const std::string& name, const std::vector<std::string>& faults) {
        for (const std::string& fault : faults) {
            foundFaults_ = true;
            std::cout << name << "-" << window().width() << "x" << window().height() << ": " << fault << std::endl;
        }
        if (!faults.empty()) takePicture(name + "-" + std::to_string(window().height()), shell_.dark());
    }
    [[nodiscard]] settings::Shell& shell() const { return shell_; }

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

/// Turns the window on each page.
class TurningTour : public CheckingTour {
  public:
    TurningTour(settings::Shell& shell, QQuickWindow& window) : CheckingTour(shell, window) {
        ::QObject::connect(&shell, &settings::Shell::aboutToAppearAnew, &window, [this] {
            ++appearances_;
            appearedFor_ = this->shell().contentSize();
        });
    }

  protected:
    void takePictures(const std::string& name) override {
        for (const std::string_view over : {"Composer", "Fault", "Notice", "Waiting"})
            if (name.starts_with(over)) return; // what stands over a page has tests of its own
        if (name.ends_with("-end") || name.ends_with("-menu")) return;
        std::cerr << "looked at " << name << "-390" << std::endl;
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
        appearedFor_ = {};
        resize(size);
        const bool anew = shell().topPage()->keepsPlaces;
        const auto hasAppeared = [&] { return appearedFor_ == window().property("viewSize").toSizeF(); };
        if (anew) waitUntil(hasAppeared, [] { return "the page to appear anew"; });
        perform([](settings::Navigation&) {});
        if (!anew && appearances_ != appearances) complain("a page that follows", {"appears anew"});
    }

    int appearances_ = 0;
    QSizeF appearedFor_; ///< the content area at the last appearance
};

class TargetTour : public CheckingTour {
  public:
    using CheckingTour::CheckingTour;

  protected:
    void takePictures(const std::string& name) override {
        drawWhole(name);
        complain(name, tests::targetFaults(*window().contentItem()));
    }
};

class LayoutTour : public CheckingTour {
  public:
    using CheckingTour::CheckingTour;

  protected:
    void takePictures(const std::string& name) override {
        drawWhole(name);
        complain(name, tests::layoutFaults(*window().contentItem()));
        // Scrolled by nobody who has the focus; or gone through already.
        for (const std::string_view other : {"-end", "-contrast", "-mirrored"})
            if (name.ends_with(other)) return;
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
    const std::string_view subject = argc == 5 ? argv[4] : "";
    if (argc < 4 || argc > 5 || (argc == 5 && subject != "contrast" && subject != "turned" && subject != "targets"))
        return fail("takes a device root, a folder, a text size and perhaps what to look at");
    platform::setDeviceRoot(argv[1]);
    QGuiApplication application(argc, argv);
    QGuiApplication::setFont(QFont("Inter"));
    QAccessible::setActive(true);
    auto& shell = *new settings::Shell; // never destroyed, as the main thread reports to it
    shell.setTextSize(std::atoi(argv[3]));
    const platform::CGSize size{320, kHigh};
    shell.launch({platform::standardBundle(), {}, settings::contentSizeOf(size)},
                 [](const std::string& why) { QCoreApplication::exit(fail(why)); });
    settings::Panes panes;
    QQmlApplicationEngine engine;
    engine.addImportPath("qrc:/qt/qml");
    engine.setInitialProperties({{"shell", QVariant::fromValue(&shell)},
                                 {"panes", QVariant::fromValue(subject == "contrast" ? &panes : nullptr)},
                                 {"width", size.width},
                                 {"height", size.height}});
    engine.load(QUrl("qrc:/qt/qml/Lumora/Main.qml"));
    auto* window = engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    if (!window) return fail("the window's own files cannot be loaded");
    std::unique_ptr<CheckingTour> tour;
    std::vector<QSize> sizes;
    if (subject == "contrast") {
        tour = std::make_unique<ContrastTour>(shell, *window);
        sizes = {{320, 844}, {390, 844}, {1000, 844}};
    } else if (subject == "turned") {
        tour = std::make_unique<TurningTour>(shell, *window);
        sizes = {{390, 844}};
    } else if (subject == "targets") {
        tour = std::make_unique<TargetTour>(shell, *window);
        sizes = {{320, 844}, {390, 844}};
    } else {
        tour = std::make_unique<LayoutTour>(shell, *window);
        sizes = {{320, kHigh}, {390, 568}, {320, kLow}};
    }
    const auto done = tour->tour(argv[2], sizes);
    // Without an end of threads and objects, as the application itself.
    std::cout.flush();
    std::_Exit(!done ? fail(done.error()) : tour->foundFaults() ? 1 : 0);
}
