import QtQuick
import Lumora

// Scrolls a table: tells it what is seen, and goes where the page or the keyboard wants.
Scroller {
    id: root

    required property TableModel table
    readonly property real columnWidth: table.grouped ? Theme.columnWidthIn(width) : width
    readonly property real columnX: (width - columnWidth) / 2
    property bool completed: false
    signal placeKept // after a change of size

    contentHeight: table.contentHeight + Theme.endGap
    interactive: table.lifted < 0

    onTableChanged: {
        cancelFlick();
        contentY = 0;
        topRow = -1;
        if (table)
            table.show(0, height);
        scrollAsAsked();
    }
    onContentYChanged: {
        table.show(contentY, height);
        if (width === placedIn.width && height === placedIn.height)
            notePlace();
    }
    onWidthChanged: resized.restart()
    onHeightChanged: {
        table.show(contentY, height);
        scrollAsAsked();
        resized.restart();
    }
    onMovementStarted: glide.stop()
    Component.onCompleted: {
        table.show(contentY, height);
        completed = true;
        scrollAsAsked();
    }

    // What stands at the top comes back there after every change of size, however often there was no room for it.
    property int topRow: -1 // the row at the top; -1 for the beginning
    property real above: 0  // how much of it is above the view
    property size placedIn: Qt.size(0, 0)

    function notePlace() {
        topRow = contentY > 0 ? table.rowBeneath(contentY) : -1;
        above = contentY - table.topOf(topRow);
    }
    function keepPlace() {
        if (topRow >= 0 && table.lifted < 0)
            scrollTo(table.topOf(topRow) + above);
        placedIn = Qt.size(width, height);
        placeKept();
    }
    Timer {
        id: resized

        interval: 0
        onTriggered: root.keepPlace()
    }

    // Shows the current row, and some of what is around it.
    function reveal() {
        if (table.current < 0 || table.lifted >= 0)
            return;
        const top = table.topOf(table.current) - 50;
        const bottom = table.topOf(table.current) + table.heightOf(table.current) + Theme.groupGap;
        if (top < contentY)
            scrollTo(top);
        else if (bottom > contentY + height)
            scrollTo(bottom - height);
        notePlace();
    }
    // Does what the page has asked for, as soon as it is known how much is seen.
    function scrollAsAsked() {
        if (!completed || height <= 0 || !table?.isScrollAsked() || table.lifted >= 0)
            return;
        glide.stop();
        const from = contentY;
        scrollTo(table.askedTop(from, height));
        notePlace();
        if (table.isAskedAnimated() && Theme.animated && contentY !== from) {
            glide.from = from;
            glide.to = contentY;
            glide.start();
        }
        table.scrollDone();
    }

    Connections {
        target: root.table
        function onScrollAsked() { root.scrollAsAsked() }
    }
    NumberAnimation on contentY {
        id: glide

        running: false
        duration: 250
        easing.type: Easing.InOutCubic
    }
}
