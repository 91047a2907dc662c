import QtQuick
import QtQuick.Templates as T
import Lumora

// A table of sections, whose rows can be moved by their handles, by the keyboard and by assistive tools, or be tapped.
// Only rows in view exist, each at the place that the model gives it.
FocusScope {
    id: root

    required property TableModel table
    required property string title

    readonly property real columnWidth: table.grouped ? Math.min(width, Theme.contentWidth) - 2 * Theme.inset : width
    readonly property real columnX: (width - columnWidth) / 2
    readonly property bool dragging: table.lifted >= 0
    readonly property alias contentY: flick.contentY
    property bool keyboardFocus: false // since a key was used, until the mouse is

    Accessible.role: Accessible.List
    Accessible.name: title

    onTableChanged: {
        landing.end();
        flick.cancelFlick();
        flick.contentY = 0;
        if (table)
            table.show(0, flick.height);
        flick.scrollAsAsked();
    }
    Connections {
        target: root.table
        function onScrollAsked() { flick.scrollAsAsked() }
    }
    onEnabledChanged: if (!enabled) putBack()
    onVisibleChanged: if (!visible) putBack()

    // -- in the hand --

    property real pointer: 0 // where the hand is, from the top of what is seen
    property real grip: 0    // from the top of the lifted row to the hand
    property real highest: 0 // where the hand has been
    property real lowest: 0

    function lift(row, y) {
        landing.end();
        flick.cancelFlick();
        keyboardFocus = false;
        table.lift(row.place);
        if (!dragging)
            return;
        forceActiveFocus(Qt.MouseFocusReason);
        overlay.take(row);
        grip = y + flick.contentY - row.rowTop;
        highest = lowest = y;
        carry(y);
    }
    function carry(y) {
        if (!dragging)
            return;
        pointer = Math.max(0, Math.min(height, y));
        highest = Math.min(highest, pointer);
        lowest = Math.max(lowest, pointer);
        overlay.rowTop = pointer + flick.contentY - grip;
        table.carry(overlay.rowTop);
    }
    function drop() {
        if (!dragging)
            return;
        table.drop();
        landing.begin();
    }
    function putBack() {
        if (!dragging)
            return;
        table.putBack();
        landing.begin();
    }

    // At the edges the table scrolls on, the faster the nearer the hand is to the edge. A hand that only presses there
    // does not want it to.
    FrameAnimation {
        readonly property real edge: Math.min(60, root.height / 4)
        readonly property bool upwards: root.lowest - root.pointer >= 4
        readonly property bool downwards: root.pointer - root.highest >= 4
        readonly property real depth: upwards && root.pointer < edge ? root.pointer / edge - 1
            : downwards && root.pointer > root.height - edge ? (root.pointer - root.height) / edge + 1 : 0

        running: root.dragging && depth !== 0
        onTriggered: {
            const y = flick.contentY + 1400 * depth * Math.abs(depth) * Math.min(frameTime, 0.1);
            flick.scrollTo(y);
            root.carry(root.pointer);
        }
    }

    // -- by keyboard and assistive tools --

    function reveal() {
        if (table.current < 0 || dragging)
            return;
        const top = table.topOf(table.current);
        const bottom = top + table.heightOf(table.current);
        if (top - 50 < flick.contentY)
            flick.scrollTo(top - 50);
        else if (bottom + 24 > flick.contentY + flick.height)
            flick.scrollTo(bottom + 24 - flick.height);
    }
    function go(place) {
        keyboardFocus = true;
        table.current = Math.max(0, Math.min(table.total - 1, place));
        reveal();
    }
    function tap(place) {
        if (!dragging)
            table.tap(place);
    }
    function step(place, by) {
        if (dragging)
            return;
        landing.end();
        table.current = place;
        table.step(place, by);
        keyboardFocus = true;
        forceActiveFocus(Qt.OtherFocusReason);
        reveal();
    }

    // The way back would take the key first.
    Keys.onShortcutOverride: event => event.accepted = dragging && event.key === Qt.Key_Escape
    Keys.onPressed: event => {
        if (dragging) {
            if (event.key === Qt.Key_Escape)
                putBack();
            event.accepted = true;
            return;
        }
        const by = event.key === Qt.Key_Down ? 1 : event.key === Qt.Key_Up ? -1 : 0;
        if (event.modifiers & Qt.AltModifier) {
            event.accepted = by !== 0 && table.current >= 0;
            if (event.accepted)
                step(table.current, by);
            return;
        }
        if ([Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space].includes(event.key)) {
            event.accepted = table.selectable && table.current >= 0;
            if (event.accepted && !event.isAutoRepeat) {
                go(table.current);
                tap(table.current);
            }
            return;
        }
        const aPage = table.current < 0 ? 1 : Math.max(1, Math.floor(height / table.heightOf(table.current)) - 1);
        const targets = new Map([
            [Qt.Key_Down, table.current + 1], [Qt.Key_Up, table.current - 1],
            [Qt.Key_PageDown, table.current + aPage], [Qt.Key_PageUp, table.current - aPage],
            [Qt.Key_Home, 0], [Qt.Key_End, table.total - 1],
        ]);
        event.accepted = targets.has(event.key) && table.current >= 0;
        if (event.accepted)
            go(targets.get(event.key));
    }
    // The first key shows where the focus is, as it does when it comes from elsewhere.
    Keys.onTabPressed: {
        if (dragging)
            return;
        if (keyboardFocus || table.current < 0)
            tabStop.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
        else
            go(table.current);
    }
    // From a row the chain leads back to the table's own stop first, which would be the same one again.
    Keys.onBacktabPressed: if (!dragging) nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    signal focusWanted

    // The stop of the tab chain, which knows how the focus came. It hands it on to the current row.
    T.Control {
        id: tabStop

        focusPolicy: root.table.total > 0 ? Qt.TabFocus : Qt.NoFocus
        Accessible.ignored: true
        onVisualFocusChanged: if (visualFocus) root.go(root.table.current)
        onActiveFocusChanged: if (activeFocus) root.focusWanted()
    }

    component MakeRoom: NumberAnimation {
        duration: 150
        easing.type: Easing.OutCubic
    }

    Flickable {
        id: flick

        anchors.fill: parent
        contentWidth: width
        contentHeight: root.table.contentHeight + 32
        pixelAligned: true // or hairlines vanish between two pixels
        boundsBehavior: Flickable.DragAndOvershootBounds
        interactive: !root.dragging
        clip: true

        function scrollTo(y) { contentY = Math.max(0, Math.min(Math.max(0, contentHeight - height), y)) }

        // What the page has asked for waits until it is known how much is seen.
        function scrollAsAsked() {
            if (!completed || height <= 0 || root.dragging || !root.table?.isScrollAsked())
                return;
            cancelFlick();
            scrolling.stop();
            const from = contentY;
            scrollTo(root.table.askedTop(from, height));
            if (root.table.isAskedAnimated() && Theme.animated && contentY !== from) {
                scrolling.from = from;
                scrolling.to = contentY;
                scrolling.start();
            }
            root.table.scrollDone();
        }

        property bool completed: false

        onContentYChanged: root.table.show(contentY, height)
        onHeightChanged: {
            root.table.show(contentY, height);
            scrollAsAsked();
        }
        Component.onCompleted: {
            root.table.show(contentY, height);
            completed = true;
            scrollAsAsked();
        }
        onMovementStarted: scrolling.stop()

        NumberAnimation on contentY {
            id: scrolling

            running: false
            duration: 250
            easing.type: Easing.InOutCubic
        }

        Repeater {
            model: root.table.sections

            Item {
                id: part

                required property SectionModel modelData
                readonly property SectionModel section: modelData

                width: flick.width

                Caption {
                    id: header

                    x: root.columnX
                    y: part.section.top
                    width: root.columnWidth
                    height: text ? Math.ceil(implicitHeight) : topPadding
                    text: part.section.header
                    onHeightChanged: part.section.headerHeight = height
                    Component.onCompleted: part.section.headerHeight = height
                    topPadding: 24
                    bottomPadding: 7
                    Accessible.role: Accessible.Heading

                    Behavior on y { enabled: root.dragging && Theme.animated; MakeRoom {} }
                }
                Repeater {
                    model: part.section

                    TableRow {
                        id: row

                        required property int place
                        required property int position
                        required property real rowTop
                        required property string spokenName
                        readonly property bool lifted: place === root.table.lifted
                        readonly property bool isCurrent: place === root.table.current && root.activeFocus
                        // Assistive tools tell the name of what gets the focus, so it waits for the name.
                        readonly property bool wanted: isCurrent && spokenName.length > 0

                        required title
                        required titleFont
                        required icon
                        required hasIcon
                        required marked
                        required movable
                        required editingStyle
                        required indented
                        required first
                        required last

                        x: root.columnX
                        y: rowTop
                        z: lifted ? -1 : 0
                        width: root.columnWidth
                        height: part.section.rowHeight
                        empty: lifted || place === landing.place
                        focused: isCurrent && root.keyboardFocus
                        selected: place === root.table.selected
                        down: touch.pressed || selected
                        fades: root.table.deselectsAnimated
                        boxed: root.table.grouped
                        inView: rowTop < flick.contentY + flick.height && rowTop + height > flick.contentY

                        // The gap goes beneath the rows of the other sections too.
                        onLiftedChanged: part.z = lifted ? -1 : 0
                        onWantedChanged: if (wanted) forceActiveFocus(Qt.OtherFocusReason)
                        Component.onCompleted: if (wanted) forceActiveFocus(Qt.OtherFocusReason)
                        onActiveFocusChanged: if (activeFocus) root.table.current = place

                        Connections {
                            target: root
                            function onFocusWanted() { if (row.wanted) row.forceActiveFocus(Qt.OtherFocusReason) }
                        }
                        Behavior on y { enabled: root.dragging && !row.lifted && Theme.animated; MakeRoom {} }

                        Accessible.role: root.table.selectable ? Accessible.RadioButton : Accessible.ListItem
                        Accessible.checkable: root.table.selectable
                        Accessible.checked: root.table.selectable && marked
                        Accessible.name: spokenName
                        Accessible.description: {
                            const header = part.section.header;
                            const where = header ? qsTr("Position %1 of %2 in %3.").arg(position).arg(part.section.total).arg(header)
                                                 : qsTr("Position %1 of %2.").arg(position).arg(part.section.total);
                            return movable ? where + " " + qsTr("Alt+Up and Alt+Down move it.") : where;
                        }
                        Accessible.focusable: true

                        // Only what is connected is told to assistive tools as an action.
                        Connections {
                            target: row.movable ? row.Accessible : null
                            function onIncreaseAction() { root.step(row.place, 1) }
                            function onDecreaseAction() { root.step(row.place, -1) }
                        }
                        Connections {
                            target: root.table.selectable ? row.Accessible : null
                            function onPressAction() { root.tap(row.place) }
                            function onToggleAction() { root.tap(row.place) }
                        }
                        MouseArea {
                            id: touch

                            enabled: root.table.selectable
                            anchors.fill: parent
                            onClicked: {
                                root.keyboardFocus = false;
                                root.tap(row.place);
                                root.forceActiveFocus(Qt.MouseFocusReason);
                            }
                        }
                        MouseArea {
                            id: handle

                            enabled: row.movable
                            anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
                            width: 60
                            preventStealing: true
                            cursorShape: !row.movable ? Qt.ArrowCursor : pressed ? Qt.ClosedHandCursor : Qt.OpenHandCursor

                            function hand(mouse) { return mapToItem(flick, mouse.x, mouse.y).y }

                            onPressed: mouse => root.lift(row, hand(mouse))
                            onPositionChanged: mouse => root.carry(hand(mouse))
                            onReleased: root.drop()
                            onCanceled: root.putBack()
                        }
                    }
                }
                Caption {
                    id: footer

                    x: root.columnX
                    y: part.section.footerTop
                    width: root.columnWidth
                    height: text ? Math.ceil(implicitHeight) : 0
                    text: part.section.footer
                    onHeightChanged: part.section.footerHeight = height
                    Component.onCompleted: part.section.footerHeight = height
                    topPadding: 7
                    lineHeight: 1.1
                    Accessible.role: Accessible.StaticText

                    Behavior on y { enabled: root.dragging && Theme.animated; MakeRoom {} }
                }
            }
        }

        T.ScrollIndicator.vertical: PageScrollIndicator {}
    }

    // The lifted row, above all the others, until it has come down.
    TableRow {
        id: overlay

        property real rowTop: 0

        visible: root.dragging || landing.running
        x: root.columnX
        y: rowTop - flick.contentY
        width: root.columnWidth
        first: true
        last: true
        down: true
        boxed: root.table.grouped

        function take(row) {
            title = row.title;
            titleFont = row.titleFont;
            icon = row.icon;
            hasIcon = row.hasIcon;
            marked = row.marked;
            movable = row.movable;
            editingStyle = row.editingStyle;
            indented = row.indented;
            height = row.height;
            rowTop = row.rowTop;
        }

        NumberAnimation {
            id: landing

            property int place: -1

            target: overlay
            property: "rowTop"
            duration: 150
            easing.type: Easing.OutCubic
            onFinished: place = -1

            function end() {
                landing.stop();
                place = -1;
            }
            function begin() {
                if (!Theme.animated)
                    return;
                place = root.table.current;
                to = root.table.topOf(place);
                restart();
            }
        }
    }
}
