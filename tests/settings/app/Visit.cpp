#include "tests/settings/app/Visit.h"
#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "tests/support/Waiting.h"

#include <QPointingDevice>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <gtest/gtest.h>

#include <variant>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

namespace tests {

using namespace settings;

namespace {

std::string wordsFor(const std::string& page, const std::optional<Event>& event) {
    if (!event) return page + ": back";
    if (const auto* tap = std::get_if<RowTapped>(&*event)) return page + ": tap " + std::to_string(tap->row);
    if (const auto* change = std::get_if<ValueChanged>(&*event))
        return page + ": change " + std::to_string(change->row) + " to " + platform::description(change->value);
    return page + ": other " + std::to_string(event->index());
}

/// One that is never destroyed, as its main thread is not.
Shell& newShell() {
    static auto& all = *new std::vector<Shell*>;
    return *all.emplace_back(new Shell);
}

/// Counts what comes there, and answers with nothing.
platform::CFMessagePortCallBack counting(std::atomic<int>& count) {
    return [&count](auto&, auto, const auto&) {
        ++count;
        return platform::NSKeyedArchiver::archivedDataWithRootObject(platform::Dictionary{});
    };
}

} // namespace

bool happens(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, int(std::chrono::milliseconds(kLongEnough).count()));
}

QQuickItem* shownIn(QQuickItem& item, const std::function<bool(const QQuickItem&)>& matches) {
    if (!item.isVisible()) return nullptr;
    if (matches(item)) return &item;
    const QList<QQuickItem*> children = item.childItems();
    for (QQuickItem* child : children)
        if (QQuickItem* found = shownIn(*child, matches)) return found;
    return nullptr;
}

Visit::Visit(QSize size)
    : shell(newShell()), asked_(lumora::portName(lumora::kRequestTweakSettings), counting(questions)),
      told_(lumora::portName(lumora::kUpdateSettings), counting(changes)) {
    panes_.setColumns(2);
    engine_.addImportPath("qrc:/qt/qml");
    const platform::CGSize content = contentSizeOf({double(size.width()), double(size.height())});
    shell.setAnimated(false);
    shell.launch({std::filesystem::path(LUMORA_TEST_ROOT) / "Library/PreferenceBundles/Lumora.bundle", {}, content},
                 [](const std::string& why) { FAIL() << why; });
    shell.post([this](Navigation& navigation) {
        navigation.setListener([this](const std::string& page, const std::optional<Event>& event) {
            if (event && std::holds_alternative<TableScrolled>(*event)) return; // tells of the window's size
            const std::lock_guard held(mutex_);
            heard_.push_back(wordsFor(page, event));
        });
    });
    QObject::connect(&search, &SearchModel::chosen, &shell, &Shell::land);
    engine_.setInitialProperties({{"shell", QVariant::fromValue(&shell)},
                                  {"search", QVariant::fromValue(&search)},
                                  {"panes", QVariant::fromValue(&panes_)},
                                  {"width", size.width()},
                                  {"height", size.height()}});
    engine_.load(QUrl("qrc:/qt/qml/Lumora/Main.qml"));
    window = qobject_cast<QQuickWindow*>(engine_.rootObjects().value(0));
    EXPECT_TRUE(happens([this] { return shell.topPage(); }));
    settle();
}

Visit::~Visit() {
    shell.post([](Navigation& navigation) { navigation.setListener([](const auto&, const auto&) {}); });
    settle();
}

void Visit::settle() {
    bool isDone = false;
    shell.post([](Navigation&) {}, [&isDone] { isDone = true; });
    EXPECT_TRUE(happens([&isDone] { return isDone; }));
    QTest::qWait(1); // what waits for the next turn of the loop
}

QQuickItem* Visit::page(const std::string& className) {
    return shownIn(*window->contentItem(), [&](const QQuickItem& item) {
        const auto* model = item.property("page").value<PageModel*>();
        return model && item.inherits("QQuickFocusScope") && model->snapshot().className == className;
    });
}

void Visit::reach(const std::string& className) {
    while (!page(className) && shell.pages().size() > 1) {
        QTest::keyClick(window, Qt::Key_Escape);
        settle();
    }
    reached_ = className;
}

QQuickItem* Visit::row(const QString& name, bool link) {
    const auto matches = [&](const QQuickItem& item) {
        const auto* model = item.property("row").value<RowModel*>();
        const bool leads = model && (model->cell() == RowModel::LinkCell || model->cell() == RowModel::LinkListCell);
        return model && leads == link && model->accessibleName() == name;
    };
    QQuickItem* place = page(reached_);
    QQuickItem* found = place ? shownIn(*place, matches) : nullptr;
    EXPECT_TRUE(found) << name.toStdString() << " on " << reached_;
    return found;
}

void Visit::click(const QString& name, bool link) {
    const QQuickItem* item = row(name, link);
    if (!item) return;
    const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseClick(window, Qt::LeftButton, {}, middle.toPoint());
    settle();
}

void Visit::scroll(double y) {
    QQuickItem* scroller = shownIn(*page(reached_), [](const QQuickItem& item) {
        return item.inherits("QQuickFlickable") && item.property("contentHeight").toDouble() > item.height();
    });
    ASSERT_TRUE(scroller);
    scroller->setProperty("contentY", y);
    settle();
}

void Visit::drag(QPoint from, int across) {
    static QPointingDevice* const screen = QTest::createTouchDevice();
    QTest::touchEvent(window, screen).press(0, from, window);
    for (int i = 1; i <= 10; ++i)
        QTest::touchEvent(window, screen).move(0, from + QPoint(across * i / 10, 0), window);
    QTest::qWait(120);
    QTest::touchEvent(window, screen).release(0, from + QPoint(across, 0), window);
    settle();
}

void Visit::type(const QString& text) {
    for (const QChar letter : text)
        QTest::keyClick(window, letter.toLatin1());
    settle();
}

void Visit::press(int key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window, Qt::Key(key), modifiers);
    settle();
    settle(); // what a landing has led to is shown when it is over
}

std::vector<std::string> Visit::heard() {
    const std::lock_guard held(mutex_);
    return heard_;
}

std::vector<std::string> Visit::opened() const {
    std::vector<std::string> classes;
    for (const PageModel* page : shell.pages())
        classes.push_back(page->snapshot().className);
    return classes;
}

} // namespace tests
