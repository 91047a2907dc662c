import QtQuick
import QtQuick.Templates as T
import Lumora

// A table of sections, whose rows can be moved by their handles, by the keyboard, by their menus and by assistive tools,
// or be tapped. Only rows in view exist, each at the place that the model gives it.
FocusScope {
    id: root

    required property TableModel table
    required property string title
    readonly property alias cursor: current
    readonly property alias scroller: flick

    // Leaves the row in the hand where it was, and closes its menu.
    function putBack() {
        overlay.putBack();
        menu.close();
    }

    // Shows a row to which the table has been asked to scroll, and where it is.
    function land(place, words) {
        filter.end();
        flick.scrollAsAsked();
        table.current = place;
        current.shown = true;
        current.landedOn = place;
        current.remark = words;
        root.forceActiveFocus(Qt.OtherFocusReason);
        current.focusWanted();
        mark.show(Qt.rect(flick.columnX, table.topOf(place), flick.columnWidth, table.heightOf(place)), "");
    }

    Accessible.role: Accessible.List
    Accessible.name: title

    onEnabledChanged: if (!enabled) putBack()
    onVisibleChanged: if (!visible) putBack()

    // The shortcut for going back would take the key first.
    Keys.onShortcutOverride: event => event.accepted = (overlay.inHand || filter.wanted) && event.key === Qt.Key_Escape
    Keys.onPressed: event => {
        if (filter.wanted && event.key === Qt.Key_Escape && !overlay.inHand)
            filter.end();
        else
            current.takeKey(event);
    }
    // The first Tab shows where the focus is, as one that comes from elsewhere does.
    Keys.onTabPressed: {
        if (overlay.inHand)
            return;
        if (current.shown || table.current < 0)
            tabStop.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
        else
            current.go(table.current);
    }
    // From a row, the chain leads back to the table's own stop first, and so to the same row.
    Keys.onBacktabPressed: if (!overlay.inHand) nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    TableCursor {
        id: current

        table: root.table
        scroller: flick
        hand: overlay
        menu: menu
        filter: filter
        list: root
    }
    TableFilter {
        id: filter

        width: parent.width
        table: root.table
        onDone: current.go(root.table.current)
    }
    Item {
        anchors { fill: parent; topMargin: filter.height }

        // The table's stop in the tab chain. It knows how the focus came, and hands it on to the current row.
        T.Control {
            id: tabStop

            focusPolicy: root.table.total > 0 ? Qt.TabFocus : Qt.NoFocus
            Accessible.ignored: true
            onVisualFocusChanged: if (visualFocus) current.go(root.table.current)
            onActiveFocusChanged: if (activeFocus) current.focusWanted()
        }
        TableScroller {
            id: flick

            anchors.fill: parent
            enabled: !menu.open
            table: root.table

            LandingMark {
                id: mark

                z: 1
                radius: root.table.grouped ? Theme.rowRadius : 0
            }
            Repeater {
                model: root.table.sections

                TableSection {
                    table: root.table
                    scroller: flick
                    hand: overlay
                    cursor: current
                }
            }
        }
        PullDown {
            anchors.fill: parent
            view: flick
            onPulled: filter.begin("")
        }
        Shadow {
            anchors.fill: overlay
            visible: overlay.visible
        }
        LiftedRow {
            id: overlay

            table: root.table
            scroller: flick
        }
        TableMenu {
            id: menu

            anchors.fill: parent
            table: root.table
            scroller: flick
            onChosen: (place, goal) => current.move(place, goal)
            onClosed: current.focusWanted()
        }
        Text {
            visible: root.table.total === 0 && root.table.filter.trim().length > 0
            anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 3 * Theme.groupGap }
            text: qsTr("Nothing like “%1” here").arg(root.table.filter.trim())
            textFormat: Text.PlainText
            color: Theme.secondary
            font.pixelSize: Theme.bodySize
        }
    }
}
