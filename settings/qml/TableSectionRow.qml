import QtQuick
import Lumora

// A row of a section, which can be tapped, moved by its handle or its menu, and have the keyboard focus.
TableRow {
    id: root

    required property int place
    required property int position
    required property real rowTop
    required property string spokenName
    required title
    required titleFont
    required icon
    required marked
    required movable
    required editingStyle
    required indented
    required first
    required last

    required property SectionModel section
    required property TableModel table
    required property TableScroller scroller
    required property LiftedRow hand
    required property TableCursor cursor
    readonly property bool lifted: place === table.lifted
    readonly property bool isCurrent: place === table.current && cursor.list.activeFocus && !cursor.filter.inUse
    // Assistive tools read out the name of what gets the focus, so the focus waits for the name.
    readonly property bool wanted: isCurrent && spokenName.length > 0
    readonly property string moveUp: qsTr("Move up")
    readonly property string moveDown: qsTr("Move down")
    // What assistive tools can do with it.
    readonly property var spokenActions: table.selectable ? ["Toggle", "Press"] : movable ? [moveUp, moveDown, "ShowMenu"] : []

    x: scroller.columnX
    y: rowTop
    z: lifted ? -1 : 0
    width: scroller.columnWidth
    height: section.rowHeight
    empty: lifted || place === hand.landingPlace
    focused: isCurrent && cursor.shown
    selected: place === table.selected
    down: touch.pressed || selected
    hovered: hover.hovered
    fades: table.deselectsAnimated
    boxed: table.grouped
    inView: rowTop < scroller.contentY + scroller.height && rowTop + height > scroller.contentY

    function takeFocus() {
        if (wanted && !cursor.menu.open)
            forceActiveFocus(Qt.OtherFocusReason);
    }
    function act(action) {
        if (table.selectable)
            return cursor.tap(place);
        cursor.shown = true;
        if (action === "ShowMenu")
            cursor.openMenu(place, spokenName, null);
        else
            cursor.move(place, action === moveUp ? TableModel.Up : TableModel.Down);
    }
    function openMenuByHand(mouse) {
        cursor.shown = false;
        cursor.openMenu(place, spokenName, mapToItem(scroller, mouse.x, mouse.y));
    }
    onWantedChanged: takeFocus()
    Component.onCompleted: takeFocus()
    onActiveFocusChanged: if (activeFocus) table.current = place

    Connections {
        target: root.cursor
        function onFocusWanted() { root.takeFocus() }
        function onMenuWanted() { if (root.isCurrent && root.movable) root.cursor.openMenu(root.place, root.spokenName, null) }
    }
    Behavior on y { enabled: root.hand.inHand && !root.lifted && Theme.animated; MoveAnimation {} }

    Accessible.role: table.selectable ? Accessible.RadioButton : Accessible.ListItem
    Accessible.checkable: table.selectable
    Accessible.checked: table.selectable && marked
    Accessible.name: spokenName
    Accessible.description: {
        const told = place === cursor.landedOn && cursor.remark ? [cursor.remark + "."] : [];
        told.push(section.header ? qsTr("Position %1 of %2 in %3.").arg(position).arg(section.total).arg(section.header)
                                 : qsTr("Position %1 of %2.").arg(position).arg(section.total));
        if (movable)
            told.push(qsTr("Alt+Up and Alt+Down move it."));
        return told.join(" ");
    }
    Accessible.focusable: true

    HoverHandler { // the area below takes a finger's tap for a mouse that stays
        id: hover
        enabled: root.table.selectable
        acceptedDevices: PointerDevice.Mouse
    }
    MouseArea {
        id: touch

        enabled: root.table.selectable
        anchors.fill: parent
        onClicked: root.cursor.click(root.place)
    }
    MouseArea {
        enabled: root.movable
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        preventStealing: root.cursor.menu.open // the finger is still down
        pressAndHoldInterval: Theme.holdTime
        onPressed: mouse => { if (mouse.button === Qt.RightButton) root.openMenuByHand(mouse) }
        // The right button has opened the menu already, beneath which the row never learns of its release.
        onPressAndHold: mouse => { if (mouse.button === Qt.LeftButton) root.openMenuByHand(mouse) }
    }
    MouseArea {
        enabled: root.movable
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        width: 60
        preventStealing: true
        cursorShape: !root.movable ? Qt.ArrowCursor : pressed ? Qt.ClosedHandCursor : Qt.OpenHandCursor

        function at(mouse) { return mapToItem(root.scroller, mouse.x, mouse.y).y }

        onPressed: mouse => root.cursor.lift(root, at(mouse))
        onPositionChanged: mouse => root.hand.carry(at(mouse))
        onReleased: root.hand.drop()
        onCanceled: root.hand.putBack()
    }
}
