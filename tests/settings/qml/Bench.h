#pragma once

#include "settings/model/DifferencesModel.h"
#include "settings/model/PageModel.h"
#include "settings/model/SearchModel.h"
#include "tests/settings/qml/BenchValues.h"

#include <QQuickItem>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

/// Stands in for the main thread in tests of the drawn rows: makes pages, sends snapshots when told to, and keeps what
/// the rows hand on.
class Bench : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList changes READ changes)
    Q_PROPERTY(QVariantList taps READ taps)
    Q_PROPERTY(QVariantList tableTaps READ tableTaps)
    Q_PROPERTY(QVariantList moves READ moves)
    Q_PROPERTY(QVariantList seeks READ seeks)
    Q_PROPERTY(QVariantList viewports READ viewports)
    Q_PROPERTY(QVariantList touches READ touches)
    Q_PROPERTY(QVariantList compositions READ compositions)
    Q_PROPERTY(QVariantList landings READ landings)
    /// Asked for cells, it brings none until `takeAll()`.
    Q_PROPERTY(bool busy MEMBER busy_)
    /// A tap on a row of the table means something, and no row can be moved.
    Q_PROPERTY(bool selectable MEMBER selectable_)
    /// Of the table, from its next snapshot on: its style, the selected row of its only section (-1 for none), and how
    /// the last one was deselected.
    Q_PROPERTY(bool plain MEMBER plain_)
    Q_PROPERTY(int selected MEMBER selected_)
    Q_PROPERTY(bool deselectsAnimated MEMBER deselectsAnimated_)
    /// How many fonts have been opened to draw titles in.
    Q_PROPERTY(int fontsOpened READ fontsOpened)

  public:
    /// Fonts that titles can be drawn in are in that folder.
    explicit Bench(QString fonts, QObject* parent) : QObject(parent), fonts_(std::move(fonts)) {}

    /// The next table is an ordinary one again.
    Q_INVOKABLE void reset();
    /// A page of 390 × 700 points that has one of these:
    /// - "rows": maps of "cell", "name", "identifier", "value", "footerText", "placeholder", "min", "max", "showValue",
    ///   "valueTitle", "marked", "byDefault", "icon" (a colour);
    /// - "sections" of a table, whose cells are made as it asks for them: maps of "header", "footer" and "rows", maps of
    ///   "title", "identifier", "icon", "marked", "fixed", "editingStyle", "indented", "font" (a file, or one and a
    ///   number, as "a.ttc#1"); with "anew", the page has made the table anew;
    /// - a view: "views" (maps of "frame", a rectangle, and "color"), "elements" (maps of "label", "frame" and "axes",
    ///   these maps of "label", "value", "vertical", "reversed") and "text" (a map of "text", "frame", "selectable" and
    ///   "id").
    /// The ground of a table or a view has the "color", or the one before.
    Q_INVOKABLE settings::PageModel* page(const QVariantMap& content);
    /// A newer snapshot of the last page.
    Q_INVOKABLE void show(const QVariantMap& content);
    /// A newer snapshot of the last page, with a message: a map of "id", "to", "subject", "body", "attachments" (maps
    /// of "name", "size"), "working", "problem"; without one when that is empty.
    Q_INVOKABLE void compose(const QVariantMap& message);
    /// The page wants a row of its only section to be seen, from the next snapshot on: 1 at the top, 2 in the middle, 3
    /// at the bottom, 0 anywhere.
    Q_INVOKABLE void askToScroll(int row, int position, bool animated = false);
    /// Everything that was handed on has arrived, and the page has shown what came of it.
    Q_INVOKABLE void takeAll();

    /// A search through an index of "pages" (maps of "title" and "from", the position of the page before) and "entries"
    /// (maps of "title", "page", "cell", "identifier", "key", "header", "section", "row", "words", "options",
    /// "shortTitles", "values", "minimum", "maximum", "showsNumber", "chosenBy"). Without them, there is no index.
    Q_INVOKABLE settings::SearchModel* search(const QVariantMap& content);
    /// Another index for the last search.
    Q_INVOKABLE void index(const QVariantMap& content);
    /// Settings for the last search.
    Q_INVOKABLE void answer(const QVariantMap& settings);

    /// Differences to choose from: "changes" (maps of "title", "path", "now", "then"), and "notes".
    Q_INVOKABLE settings::DifferencesModel* differences(const QVariantMap& content);

    [[nodiscard]] static int fontsOpened();
    // The events of each kind since the last page was made.
    /// Lists of a row and a value.
    [[nodiscard]] QVariantList changes() const { return told<settings::ValueChanged>(); }
    /// Rows.
    [[nodiscard]] QVariantList taps() const { return told<settings::RowTapped>(); }
    /// Lists of two numbers: section and row.
    [[nodiscard]] QVariantList tableTaps() const { return told<settings::TableRowTapped>(); }
    /// Lists of four numbers: section and row from which, section and row to which.
    [[nodiscard]] QVariantList moves() const { return told<settings::RowMoved>(); }
    /// Lists of a text and two numbers: what a name begins with, and section and row after which.
    [[nodiscard]] QVariantList seeks() const { return told<settings::TableRowSought>(); }
    /// Maps of "top", "bottom", "headers", "footers".
    [[nodiscard]] QVariantList viewports() const { return told<settings::TableScrolled>(); }
    /// One list for each event, of lists of four: finger, "began", "moved", "ended" or "cancelled", x, y.
    [[nodiscard]] QVariantList touches() const { return told<settings::Touched>(); }
    /// Where searches have led: lists of the classes on the way, then the row's position, or nothing.
    [[nodiscard]] QVariantList landings() const { return landings_; }
    /// Maps of "action" ("send", "save", "cancel", "leave"), "to", "subject", "body".
    [[nodiscard]] QVariantList compositions() const { return told<settings::Composed>(); }

    /// What assistive tools are told about everything in the item's window, every text of each.
    Q_INVOKABLE QVariantList spoken(QQuickItem* item);
    /// Does what an assistive tool would by that action on the control of that name in the item's window: "Toggle",
    /// "Press", "Increase", "Decrease", "Move up", "Move down", "ShowMenu".
    Q_INVOKABLE bool act(QQuickItem* item, const QString& name, const QString& action);
    /// Sets the value of the slider of that name, as an assistive tool would.
    Q_INVOKABLE bool setNumber(QQuickItem* item, const QString& name, double value);

    /// Pulls what scrolls there down by so many points with two fingers on a touchpad, and lets go. Touchpads of some
    /// desktops tell when that begins and ends, others do not.
    Q_INVOKABLE void pullByTouchpad(QQuickItem* item, int points, bool tellsOfItsEnd);
    /// Tells the item's window of a key that is held.
    Q_INVOKABLE void repeatKey(QQuickItem* item, int key);

  private:
    void take(settings::Event event, std::function<void()> taken);
    template<class Kind>
    [[nodiscard]] QVariantList told() const {
        QVariantList all;
        for (const settings::Event& event : events_)
            if (std::holds_alternative<Kind>(event)) all << bench_values::written(event);
        return all;
    }
    std::shared_ptr<const settings::PageSnapshot> snapshot(const QVariantMap& content);
    std::shared_ptr<const settings::PageSnapshot> tableSnapshot() const;
    [[nodiscard]] settings::CellSnapshot toCell(const QVariantMap& map) const;
    void setSections(const QVariantList& sections);
    [[nodiscard]] platform::UIFontRef fontIn(const QString& file) const;

    settings::PageModel* page_ = nullptr;
    settings::SearchModel* search_ = nullptr;
    QVariantList landings_;               ///< since the last search was made
    std::vector<settings::Event> events_; ///< since the last page was made
    platform::TableLayout layout_;
    std::map<platform::NSIndexPath, settings::CellSnapshot> cells_; ///< of the table, every one
    settings::TableViewport viewport_;
    QString fonts_;
    bool busy_ = false;
    bool selectable_ = false;
    bool plain_ = false;
    int selected_ = -1;
    bool deselectsAnimated_ = false;
    platform::TableScrollRequest scroll_;
    std::uint64_t tableId_ = 1;
    platform::UIColorRef ground_;
    std::vector<std::function<void()>> underWay_;
};
