#include "settings/app/Application.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/services/PictureDecoder.h"
#include "programs/DesktopLook.h"
#include "programs/Display.h"
#include "programs/Program.h"
#include "programs/Sigterm.h"
#include "settings/app/History.h"
#include "settings/app/LockScreen.h"
#include "settings/app/OneWindow.h"
#include "settings/app/Pictures.h"
#include "settings/app/Profiles.h"
#include "settings/app/SearchSource.h"
#include "settings/app/TweakQuestions.h"
#include "settings/app/WindowSize.h"
#include "settings/model/Accessibility.h"
#include "settings/model/DoubleClicks.h"
#include "settings/model/LiftedFinger.h"
#include "settings/model/Panes.h"
#include "settings/model/TouchItem.h"

#include <QFileInfo>
#include <QFont>
#include <QGuiApplication>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QScreen>
#include <QUrl>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <cmath>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

namespace settings {

using platform::Result;
using programs::complain;
using programs::DesktopLook;

namespace {

/// Follows the desktop in what the command line leaves open.
void followDesktop(Shell& shell, const Options& options) {
    auto* desktop = new DesktopLook(&shell);
    if (!options.dark) QObject::connect(desktop, &DesktopLook::darkChosen, &shell, &Shell::setDark);
    if (!options.textSize)
        QObject::connect(desktop, &DesktopLook::textSizeChosen, &shell, [&shell](double percent) {
            shell.setTextSize(int(std::lround(std::clamp<double>(percent, kSmallestTexts, kLargestTexts))));
        });
    if (!options.moreContrast)
        QObject::connect(desktop, &DesktopLook::moreContrastChosen, &shell, &Shell::setMoreContrast);
    QObject::connect(desktop, &DesktopLook::lessMotionChosen, &shell,
                     [&shell](bool less) { shell.setAnimated(!less); });
}

/// How this program makes the index of the pages that it shows.
search::IndexOrder orderFor(const Options& options, const std::filesystem::path& bundle) {
    search::IndexOrder order;
    std::error_code unknown;
    order.program = std::filesystem::read_symlink("/proc/self/exe", unknown);
    order.root = options.root.value_or(std::filesystem::path());
    order.bundle = bundle;
    return order;
}

/// What only a person at the window needs.
void attend(QQuickWindow& window, Shell& shell, OneWindow& oneWindow, bool keepsSize, const Panes& panes) {
    auto* doubleClicks = new DoubleClicks(&shell);
    QObject::connect(&shell, &Shell::pagePushed, doubleClicks, &DoubleClicks::noteOpened);
    window.installEventFilter(doubleClicks);
    window.installEventFilter(new LiftedFinger(&shell));
    programs::closeAtSigterm(window);
    const KeptColumns before{panes.columns(), panes.divider()};
    QObject::connect(&shell, &Shell::leaving, &window, [&window, &oneWindow, &panes, before, keepsSize] {
        oneWindow.release();
        if (const KeptColumns now{panes.columns(), panes.divider()}; now != before) keepColumns(now);
        if (const bool marks = window.property("marksChanges").toBool(); marks != keptMarks()) keepMarks(marks);
        // A window that fills the screen has another size when it does not.
        if (keepsSize && window.visibility() == QWindow::Windowed)
            keepWindowSize({double(window.width()), double(window.height())});
    });
}

/// Empty for no file.
QString fileUrl(const std::string& file) {
    if (file.empty()) return {};
    return QUrl::fromLocalFile(QFileInfo(QString::fromStdString(file)).absoluteFilePath()).toString(QUrl::FullyEncoded);
}

platform::CGSize sizeForScreen() {
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    return firstWindowSize({double(screen.width()), double(screen.height())});
}

/// How the columns are at first.
Panes* makePanes(const Options& options, bool picturesOnly, QObject* parent) {
    auto* panes = new Panes(parent);
    const KeptColumns kept = picturesOnly ? KeptColumns{1, 0} : keptColumns();
    panes->setColumns(options.columns.value_or(kept.columns));
    panes->setDivider(kept.divider);
    panes->offered = !picturesOnly || options.columns;
    return panes;
}

} // namespace

int runApplication(int argc, char** argv, const Options& asked) {
    Options options = asked;
    const bool picturesOnly = programs::savesPicturesOnly(options.grab, options.tour, "lumora-tour");
    programs::prepareDrawing(picturesOnly, options.renderer);
    if (picturesOnly) platform::PicturePatience::makeEndless();

    // None of these is ever destroyed: the main thread reports to the shell until the process ends, and where
    // $QSG_RENDER_LOOP asks for a thread that draws, destroying the window sometimes waits for that thread for ever.
    new QGuiApplication(argc, argv);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Settings"));
    QGuiApplication::setDesktopFileName(QStringLiteral("lumora-settings"));
    QGuiApplication::setQuitOnLastWindowClosed(false); // Shell::leave() ends the process
    TouchItem::wantEveryMove();
    completeAccessibility();
    QGuiApplication::setFont(QFont(QStringLiteral("Inter")));

    const auto bundle = options.bundle.value_or(platform::standardBundle());
    // The toolkit would ask the translations of the window's own words, of which there are none.
    QGuiApplication::setLayoutDirection(QLocale(QLocale::system().uiLanguages().value(0)).textDirection());
    auto& shell = *new Shell;
    OneWindow* oneWindow = nullptr;
    if (!picturesOnly) {
        oneWindow = new OneWindow(OneWindow::nameFor(bundle, platform::portsFolder()),
                                  [&shell](const auto& start) { return shell.activate(start.page, start.profile); });
    }
    shell.setDark(options.dark.value_or(false));
    shell.setMoreContrast(options.moreContrast.value_or(false));
    shell.setTextSize(options.textSize.value_or(100));
    if (!picturesOnly) followDesktop(shell, options);
    const bool keepsSize = !picturesOnly && !options.size;
    const std::optional<platform::CGSize> kept = options.size || !keepsSize ? options.size : keptWindowSize();
    const platform::CGSize size = kept ? *kept : picturesOnly ? kUsualSize : sizeForScreen();
    LockScreen* lockScreen = picturesOnly && !options.lockScreen ? nullptr : new LockScreen(picturesOnly, &shell);
    SearchModel* search = nullptr;
    SearchSource* searched = nullptr;
    if (!picturesOnly || !options.search.empty()) {
        search = new SearchModel(&shell);
        searched = new SearchSource(*search, orderFor(options, bundle), &shell);
        QObject::connect(search, &SearchModel::chosen, &shell, &Shell::land);
        QObject::connect(&shell, &Shell::leaving, searched, &SearchSource::stop);
    }
    const double beside = lockScreen ? LockScreen::widthIn(size) : 0;
    Panes& panes = *makePanes(options, picturesOnly, &shell);
    const double room = size.width - beside;
    const double list = Panes::listWidthIn({room, size.height}, panes.columns(), panes.divider());
    auto& engine = *new QQmlApplicationEngine;
    const QString profile = fileUrl(options.profile);
    if (const auto exitCode =
            oneWindow ? oneWindow->handOver({QString::fromStdString(options.page), profile}) : std::nullopt)
        return *exitCode;
    const platform::CGSize contentSize = contentSizeOf({Panes::viewWidthIn(room, list), size.height});
    shell.launch({bundle, options.page, contentSize, !picturesOnly || panes.columns() == 2},
                 [picturesOnly](const std::string& why) {
                     complain(why);
                     // The code that takes pictures would go on waiting for the page.
                     if (picturesOnly) std::_Exit(1);
                 });
    if (!picturesOnly) {
        bringDefaults(shell);
        shell.followTweak();
    }
    shell.post([](Navigation& navigation) { navigation.setSender(sendChanges); });
    Profiles& profiles = *new Profiles(shell, lockScreen, options.root.value_or(std::filesystem::path()));
    if (lockScreen) {
        QObject::connect(&shell, &Shell::held, lockScreen, &LockScreen::hold);
        QObject::connect(&shell, &Shell::released, lockScreen, &LockScreen::letGo);
        lockScreen->setTextSize(shell.textSize());
        QObject::connect(&shell, &Shell::lookChanged, lockScreen,
                         [&shell, lockScreen] { lockScreen->setTextSize(shell.textSize()); });
    }

    History& history = *new History(shell, lockScreen, options.root.value_or(std::filesystem::path()));

    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.setInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(&shell)},
                                 {QStringLiteral("search"), QVariant::fromValue(search)},
                                 {QStringLiteral("searchFor"), QString::fromStdString(options.search)},
                                 {QStringLiteral("lockScreen"), QVariant::fromValue<QObject*>(lockScreen)},
                                 {QStringLiteral("panes"), QVariant::fromValue(&panes)},
                                 {QStringLiteral("history"), QVariant::fromValue<QObject*>(&history)},
                                 {QStringLiteral("historyFirst"), options.history},
                                 {QStringLiteral("marksChanges"), !picturesOnly && keptMarks()},
                                 {QStringLiteral("profile"), profile},
                                 {QStringLiteral("profiles"), QVariant::fromValue<QObject*>(&profiles)},
                                 {QStringLiteral("width"), size.width},
                                 {QStringLiteral("height"), size.height}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Lumora/Main.qml")));
    auto* window = engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    if (!window) return complain("the window's own files cannot be loaded");
    programs::failWithoutRenderer(*window);
    if (oneWindow) {
        attend(*window, shell, *oneWindow, keepsSize, panes);
        searched->awaitRest(*window);
        return QGuiApplication::exec();
    }

    Pictures pictures(shell, *window, std::chrono::milliseconds(qint64(options.timeout * 1000)),
                      [](const std::string& why) { std::_Exit(complain(why)); });
    const bool looksBack = options.history || !options.profile.empty();
    const bool hasFace = beside > 0 || (lockScreen && options.history);
    if (hasFace || searched || looksBack)
        pictures.awaitAlso(
            [=, &profiles, &history] {
                return (!hasFace || lockScreen->isComplete()) && (!searched || searched->isComplete()) &&
                       (options.profile.empty() || profiles.isComplete()) && (!options.history || history.isComplete());
            },
            searched    ? "the search"
            : looksBack ? "the sheet"
                        : "the lock screen");
    const Result<void> saved = options.grab ? pictures.grab(*options.grab) : pictures.tour(*options.tour);
    return saved ? 0 : complain(saved.error());
}

} // namespace settings
