#include "settings/app/Pictures.h"

#include "platform/foundation/Class.h"
#include "platform/preferences/PSSpecifier.h"
#include "programs/SavePicture.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QQuickItem>
#include <QTimer>

#include <algorithm>
#include <cctype>

namespace settings {

using platform::Result;

namespace {

/// A title as a file name for any system, and not too long for one: "Sleep After" becomes "SleepAfter".
std::string compact(const std::string& title) {
    std::string name;
    std::copy_if(title.begin(), title.end(), std::back_inserter(name),
                 [](unsigned char letter) { return std::isalnum(letter) || letter >= 0x80; });
    const auto isWithinLetter = [](unsigned char byte) { return (byte & 0xC0U) == 0x80; };
    std::size_t end = std::min<std::size_t>(name.size(), 100);
    while (end < name.size() && isWithinLetter(static_cast<unsigned char>(name[end])))
        --end;
    return name.substr(0, end);
}

/// Whether the page is of the class that all option lists share, so that the class has several pictures.
bool isShared(const PageSnapshot& page) {
    return std::any_of(page.rows.begin(), page.rows.end(),
                       [](const RowSnapshot& row) { return row.cell == platform::PSListItemCell; });
}

/// The first visible item that matches, from the outside to the inside; null for none.
QQuickItem* find(QQuickItem& item, const std::function<bool(const QQuickItem&)>& matches) {
    if (!item.isVisible()) return nullptr;
    if (matches(item)) return &item;
    const QList<QQuickItem*> children = item.childItems();
    for (QQuickItem* child : children)
        if (QQuickItem* found = find(*child, matches)) return found;
    return nullptr;
}

/// Whether it scrolls and has more to show.
bool isLong(const QQuickItem& item) {
    return item.inherits("QQuickFlickable") && item.property("contentHeight").toDouble() > item.height() + 1;
}

/// Whether there is one colour all over. The bar alone has several, so nothing has been drawn yet then.
bool isFlat(const QImage& picture) {
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixel(x, y) != picture.pixel(0, 0)) return false;
    return true;
}

bool isLink(const RowSnapshot& row) {
    return row.cell == platform::PSLinkCell || row.cell == platform::PSLinkListCell;
}

} // namespace

Pictures::Pictures(Shell& shell, QQuickWindow& window, std::chrono::milliseconds atMost,
                   const std::function<void(const std::string& why)>& overdue)
    : shell_(shell), window_(window), atMost_(atMost), drawing_(atMost, [overdue] {
          // A machine that stands still when the time is over keeps the loop from ending its wait for something else.
          const std::string other = whatBlocks();
          overdue("timed out waiting for " + (other.empty() ? "the page to be drawn" : other));
      }) {
    shell_.setAnimated(false);
    window_.installEventFilter(this);
}

bool Pictures::eventFilter(QObject* /*watched*/, QEvent* event) {
    return event->isInputEvent();
}

void Pictures::awaitAlso(std::function<bool()> isThere, std::string name) {
    isElseThere_ = std::move(isThere);
    else_ = std::move(name);
}

Result<void> Pictures::grab(const std::filesystem::path& file) {
    try {
        settle();
        waitUntil(
            [&] {
                // What is not yet there may ask for more once it is drawn.
                return !drawn().isNull() && isElseThere_() && !shell_.waiting();
            },
            [&] { return else_; });
        save(file);
        return {};
    } catch (const Stopped& stopped) {
        return Result<void>::failure(stopped.why);
    }
}

Result<void> Pictures::tour(const std::filesystem::path& folder, std::vector<QSize> sizes) {
    if (sizes.empty())
        for (const int width : {320, 390, 1024})
            sizes.emplace_back(width, window_.height());
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    if (failed) return Result<void>::failure("cannot make " + folder.string() + ": " + failed.message());
    folder_ = folder;
    try {
        for (const QSize size : sizes) {
            settle();
            resize(size);
            visited_.clear();
            openAnew(); // what a page makes when it appears, it makes for the present width
            visitTopPage();
            visitComposer();
            visitWaitingScreen();
            visitFaults();
        }
        return {};
    } catch (const Stopped& stopped) {
        return Result<void>::failure(stopped.why);
    }
}

/// Takes the page's pictures, then opens each of its links and comes back.
void Pictures::visitTopPage() {
    const PageSnapshot page = *shell_.topPage();
    const std::string name = pictureName(page);
    if (!visited_.insert(name).second) return;
    settle();
    takePictures(name);
    takeOtherPictures(name);
    if (scroll(true)) {
        takePictures(name + "-end");
        scroll(false);
    }
    visitMenu(page, name);
    const std::size_t depth = shell_.pages().size();
    for (std::size_t row = 0; row < page.rows.size(); ++row) {
        if (!isLink(page.rows[row])) continue;
        perform([id = page.id, row](Navigation& navigation) { navigation.handle(id, RowTapped{row}); });
        if (shell_.pages().size() == depth) {
            missPage(name, page.rows[row]);
            continue;
        }
        visitTopPage();
        perform([id = shell_.topPage()->id](Navigation& navigation) { navigation.back(id); });
    }
}

/// An option list is known by its title, and where two have the same title by the page that leads to it too. Of other
/// classes, the first page is known by the class alone.
std::string Pictures::pictureName(const PageSnapshot& page) {
    if (!isShared(page)) {
        const bool first = titles_.emplace(page.className, page.title).first->second == page.title;
        return first ? page.className : page.className + "-" + compact(page.title);
    }
    const std::string name = page.className + "-" + compact(page.title);
    const auto& pages = shell_.pages();
    const std::string opener = pages.size() > 1 ? pages[pages.size() - 2]->snapshot().className : std::string();
    return openers_.emplace(name, opener).first->second == opener ? name : name + "-" + opener;
}

/// Opens the menu of the first row, on the first page with a list whose rows can be moved.
void Pictures::visitMenu(const PageSnapshot& page, const std::string& name) {
    if (!page.table || page.table->selectable || page.table->layout.rowTotal() == 0) return;
    if (!visited_.insert("a menu").second) return;
    QQuickItem* table = find(*window_.contentItem(), [](const QQuickItem& item) {
        return QByteArrayView(item.metaObject()->className()).startsWith("Table_");
    });
    if (!table) return;
    QMetaObject::invokeMethod(table->property("cursor").value<QObject*>(), "openMenu", Q_ARG(QVariant, 0),
                              Q_ARG(QVariant, QString()), Q_ARG(QVariant, QVariant::fromValue(nullptr)));
    takePictures(name + "-menu");
    QMetaObject::invokeMethod(table, "putBack");
}

/// Presents a made-up message. The button would compose a real one, which differs on each device.
void Pictures::visitComposer() {
    present(std::make_shared<const ComposerSnapshot>(
        ComposerSnapshot{0,
                         {"support@nevo.example", "Lumora -- iPhone6,1(7.0.4)",
                          "Application: Lumora\nDevice: iPhone6,1\nFirmware: 7.0.4\n\nComments:\nThe clock does not "
                          "follow the color that I choose.\n\nReproduce:\nChoose a color, then lock the screen."},
                         {{"log", 48'200}, {"dpkgl.log", 1'260'000}},
                         false,
                         {}}));
    takePictures("Composer");
    ComposerSnapshot failed = *shell_.topPage()->composer;
    failed.problem = "The mail transport says: cannot connect to smtp.nevo.example, port 587.";
    failed.draft = "~/.local/share/lumora/drafts/Lumora.eml";
    present(std::make_shared<const ComposerSnapshot>(failed));
    takePictures("Composer-failed");
    present(nullptr);
}

void Pictures::present(std::shared_ptr<const ComposerSnapshot> composer) {
    PageSnapshot page = *shell_.topPage();
    page.composer = std::move(composer);
    shell_.take({{std::make_shared<const PageSnapshot>(std::move(page))}, {}});
}

void Pictures::visitWaitingScreen() {
    const auto page = std::make_shared<const PageSnapshot>(*shell_.topPage());
    shell_.take({{page}, Opening{"LumoraPreferences", "Lumora"}});
    for (const bool lost : {false, true}) {
        shell_.setPatience(lost ? Shell::Patience::over : Shell::Patience::waiting, true);
        takePictures(lost ? "Waiting-over" : "Waiting");
    }
    shell_.setPatience(Shell::Patience::fresh, false);
    shell_.take({{page}, {}});
}

/// Of a page of rows with every control, one of links and one with a list.
void Pictures::takeOtherPictures(const std::string& name) {
    if (name != "LumoraPreferences" && name != "LSDateViewSettings" && name != "AppsListController") return;
    shell_.setMoreContrast(true);
    takePictures(name + "-contrast");
    shell_.setMoreContrast(false);
    const Qt::LayoutDirection usual = QGuiApplication::layoutDirection();
    QGuiApplication::setLayoutDirection(usual == Qt::LeftToRight ? Qt::RightToLeft : Qt::LeftToRight);
    takePictures(name + "-mirrored");
    QGuiApplication::setLayoutDirection(usual);
}

void Pictures::visitFaults() {
    shell_.setTweakGone(true);
    settle();
    takePictures("Notice");
    shell_.setTweakGone(false);
    settle();
    shell_.setFault("there is no settings bundle at /Library/PreferenceBundles/Lumora.bundle");
    takePictures("Fault");
    shell_.setFault({});
}

void Pictures::takePictures(const std::string& name) {
    for (const bool dark : {false, true})
        takePicture(name, dark);
}

void Pictures::takePicture(const std::string& name, bool dark) {
    shell_.setDark(dark);
    save(folder_ / (name + "-" + std::to_string(window_.width()) + (dark ? "-dark.png" : "-light.png")));
}

QImage Pictures::drawn() {
    draw();
    QImage picture;
    waitUntil(
        [&] {
            const bool showed = showsPage();
            picture = window_.grabWindow();
            window_.update(); // a display may draw the new size a few frames later
            const QSize size = window_.size() * window_.effectiveDevicePixelRatio();
            return showed && (picture.isNull() || (picture.size() == size && !isFlat(picture)));
        },
        [] { return "the window to be drawn"; });
    // One format, so that a picture is the same on every platform.
    return picture.convertToFormat(QImage::Format_RGB32);
}

/// Has all of the window drawn anew: where only a part is, the edges of what is drawn smoothed may differ by a shade.
void Pictures::drawAnew() {
    const QColor ground = window_.color();
    window_.setColor(ground == Qt::black ? Qt::white : Qt::black);
    (void)drawn();
    window_.setColor(ground);
}

void Pictures::save(const std::filesystem::path& file) {
    drawAnew();
    QImage picture = drawn();
    picture.setDotsPerMeterX(2835);
    picture.setDotsPerMeterY(2835);
    if (picture.isNull() || !programs::savePicture(picture, file))
        throw Stopped{"cannot write the picture " + file.string()};
}

/// Whether the top page stands in the window at its full size. A window has no content before the display has told its
/// size, which may come later than the page.
bool Pictures::showsPage() const {
    const QSizeF whole = window_.size();
    if (!shell_.topPage() || window_.contentItem()->size() != whole) return false;
    const QQuickItem* page = find(*window_.contentItem(), [shown = shell_.pages().back()](const QQuickItem& item) {
        return item.property("page").value<PageModel*>() == shown;
    });
    // A notice takes some of the height.
    const QRectF area = window_.property("pageArea").toRectF();
    return page && page->mapRectToScene({{}, page->size()}) == area && area.bottom() == whole.height() &&
           area.height() <= contentSizeOf({whole.width(), whole.height()}).height;
}

void Pictures::resize(QSize size) {
    if (window_.size() == size) return;
    window_.resize(size);
    // What is in the window has that size later than the window.
    waitUntil([&] { return window_.contentItem()->size() == QSizeF(size); }, [] { return "the window's new size"; });
    const QSizeF area = window_.property("viewSize").toSizeF();
    const platform::CGSize content{area.width(), area.height()};
    perform([content](Navigation& navigation) { navigation.setContentSize(content); });
}

/// Scrolls to the page's end or beginning. False when the window shows all of the page anyway.
bool Pictures::scroll(bool toEnd) {
    QQuickItem* scroller = find(*window_.contentItem(), isLong);
    if (!scroller) return false;
    // A table knows how high it is once it has made the rows that are seen.
    for (int i = 0; i < 2; ++i) {
        const double top = scroller->property("originY").toDouble();
        const double end = top + scroller->property("contentHeight").toDouble() - scroller->height();
        scroller->setProperty("contentY", toEnd ? end : top);
        settle();
    }
    return true;
}

/// Waits until a page stands, with everything that it has asked for since it was drawn.
void Pictures::settle() {
    waitUntil([&] { return shell_.topPage() != nullptr; }, [&] { return awaitedPage(); });
    waitUntil([&] { return showsPage(); }, [] { return "the window to show the page"; });
    draw();
    perform([](Navigation&) {});
}

void Pictures::draw() {
    const DrawingLimit::Turn turn(drawing_);
    QCoreApplication::processEvents();
}

/// A page makes its view when it appears, and it appears again after another one has been on top.
void Pictures::openAnew() {
    perform([name = shell_.topPage()->className](Navigation& navigation) {
        navigation.open(platform::NSClassFromString(name), {});
    });
    perform([id = shell_.topPage()->id](Navigation& navigation) { navigation.back(id); });
}

void Pictures::perform(std::function<void(Navigation&)> work) {
    const auto done = std::make_shared<bool>(false);
    shell_.post(std::move(work), [done] { *done = true; });
    waitUntil([&] { return *done; }, [&] { return awaitedPage(); });
}

std::string Pictures::awaitedPage() const {
    return whatBlocks(shell_.waitingTitle().toStdString());
}

void Pictures::waitUntil(const std::function<bool()>& condition, const std::function<std::string()>& awaited) {
    const DrawingLimit::Turn turn(drawing_);
    QTimer deadline; // its event ends the wait when no other comes
    deadline.setSingleShot(true);
    deadline.start(atMost_);
    while (!condition()) {
        if (!deadline.isActive()) throw Stopped{"timed out waiting for " + awaited()};
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

} // namespace settings
