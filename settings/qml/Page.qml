import QtQuick
import Lumora

// One open page: its rows, or the view that it hosts and the table or text in it. Opaque, because the page below slides
// under it.
FocusScope {
    id: root

    required property PageModel page
    property real widestView: Infinity // of a view that it hosts, which stands in the middle
    signal gone(PageModel page)
    signal typed(string text) // letters that nothing on the page has a use for
    signal pulled             // down, from its beginning

    Accessible.role: Accessible.Pane
    Accessible.name: page.title
    Component.onDestruction: gone(page)

    // Leaves the row in the user's hand where it was, and closes a row's menu.
    function putBack() {
        (list.item as Table)?.putBack();
        (rows.item as RowsPage)?.putBack();
    }

    // Shows a row and gives it the focus: its position on the page, or its place in the table. None for -1. Assistive tools
    // are told the words, too.
    function land(row, words = "") {
        if (row >= 0)
            (rows.item ?? list.item)?.land(row, words);
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }
    Loader {
        id: rows

        anchors.fill: parent
        active: !root.page.hostsView
        focus: active
        sourceComponent: RowsPage {
            page: root.page
            onTyped: text => root.typed(text)
            onPulled: root.pulled()
        }
    }
    // The wheel scrolls a view that stands in the middle from beside it, too.
    WheelItem {
        anchors.fill: parent
        target: list.scroller ?? (reading.item as TextPage)?.scroller ?? (area.interactive ? area : null)
    }
    // Scrolls over a view that the window was turned on, until it is made anew.
    Flickable {
        id: area

        x: Math.round((root.width - width) / 2)
        width: Math.min(root.width, root.widestView)
        height: root.height
        contentWidth: Math.max(width, root.page.viewSize.width)
        contentHeight: Math.max(height, root.page.viewSize.height)
        interactive: width > 0 && (contentWidth > width || contentHeight > height)
        visible: interactive
        boundsBehavior: Flickable.StopAtBounds
        pixelAligned: true
        onInteractiveChanged: {
            if (!interactive)
                contentX = contentY = 0;
        }
    }
    // In what scrolls only while that is needed: it would take part in every touch.
    Item {
        parent: area.interactive ? area.contentItem : root
        x: area.interactive ? 0 : area.x
        width: area.contentWidth
        height: area.contentHeight

        Loader {
            anchors.fill: parent
            active: root.page.hostsView
            sourceComponent: Item {
                ViewItem {
                    anchors.fill: parent
                    page: root.page
                }
                Repeater {
                    id: elements

                    model: root.page.elements

                    Element {
                        required property ElementModel modelData

                        element: modelData
                    }
                }
                TouchItem {
                    id: fingers

                    anchors.fill: parent
                    page: root.page
                    onBegan: place => {
                        fingers.inUse = false;
                        for (let i = 0; i < elements.count; ++i) {
                            const element = elements.itemAt(i) as Element;
                            if (!element.contains(mapToItem(element, place)))
                                continue;
                            fingers.inUse = true;
                            element.takeInHand();
                        }
                    }
                }
            }
        }
        Loader {
            id: list

            x: root.page.table?.frame.x ?? 0
            y: root.page.table?.frame.y ?? 0
            width: root.page.table?.frame.width ?? 0
            height: root.page.table?.frame.height ?? 0
            active: root.page.table !== null
            focus: active
            onHeightChanged: {
                lowered = lowered || isCurrentRowAbove(seenHeight);
                seenHeight = height;
            }
            sourceComponent: Table { table: root.page.table; title: root.page.title; focus: true }

            // A window that becomes lower leaves the current row in view.
            Connections {
                target: list.scroller
                function onPlaceKept() {
                    if (list.lowered)
                        list.keepCurrentRow();
                    list.lowered = false;
                }
            }
            property bool lowered: false
            property real seenHeight: 0
            readonly property TableScroller scroller: (item as Table)?.scroller ?? null

            function isCurrentRowAbove(end) {
                const table = root.page.table;
                return scroller && table && table.topOf(table.current) + table.heightOf(table.current) <= scroller.contentY + end;
            }
            function keepCurrentRow() {
                if (!isCurrentRowAbove(height))
                    scroller?.reveal();
            }
        }
        Loader {
            id: reading

            x: root.page.text?.frame.x ?? 0
            y: root.page.text?.frame.y ?? 0
            width: root.page.text?.frame.width ?? 0
            // A window that is lower than the view leaves the end of the text in reach.
            height: Math.max(0, Math.min(root.page.text?.frame.height ?? 0, root.height - y))
            active: root.page.text !== null
            focus: active
            sourceComponent: TextPage { text: root.page.text; focus: true }
        }
    }
}
