import QtQuick
import Lumora

// Scrolls a table: tells it what is seen, and goes where the page or the keyboard wants.
Scroller {
    id: root

    required property TableModel table
    readonly property real columnWidth: table.grouped ? Theme.columnWidthIn(width) : width
    readonly property real columnX: (width - columnWidth) / 2
    property bool completed: false

    contentHeight: table.contentHeight + Theme.endGap
    interactive: table.lifted < 0

    onTableChanged: {
        cancelFlick();
        contentY = 0;
        if (table)
            table.show(0, height);
        scrollAsAsked();
    }
    onContentYChanged: table.show(contentY, height)
    onHeightChanged: {
        table.show(contentY, height);
        scrollAsAsked();
    }
    onMovementStarted: glide.stop()
    Component.onCompleted: {
        table.show(contentY, height);
        completed = true;
        scrollAsAsked();
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
    }
    // Does what the page has asked for, as soon as it is known how much is seen.
    function scrollAsAsked() {
        if (!completed || height <= 0 || !table?.isScrollAsked() || table.lifted >= 0)
            return;
        glide.stop();
        const from = contentY;
        scrollTo(table.askedTop(from, height));
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
