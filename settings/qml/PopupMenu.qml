import QtQuick

// A small sheet of what can be done with something, beneath that or above it, or at the hand that has asked for it. Takes
// all input until a line is chosen; a tap beside it and Escape only close it.
FocusScope {
    id: root

    property bool open: false
    property string name   // of what it belongs to
    property rect around   // where that is
    property real aside: 0 // between the menu and the end, without a hand
    property real widest: width
    property var lines: [] // maps of "text", "enabled" and, of what stays chosen, "checked"
    property var hand: null // where it is, a point; null for none
    readonly property alias box: box
    readonly property int gap: 4 // to what it belongs to
    readonly property bool hasRoomBelow: around.y + around.height + gap + box.height <= height
    signal lineChosen(int line)
    signal dismissed

    visible: open

    // To the next line that can be chosen, and around the ends.
    function step(by) {
        const lines = Array.from({ length: repeater.count }, (_, i) => repeater.itemAt(i)).filter(line => line.enabled);
        if (lines.length === 0)
            return;
        const at = lines.findIndex(line => line.activeFocus);
        const next = at < 0 ? (by > 0 ? 0 : lines.length - 1) : (at + by + lines.length) % lines.length;
        lines[next].forceActiveFocus(Qt.PopupFocusReason);
        flick.show(lines[next].y, lines[next].y + lines[next].height);
    }
    function takeFocus() { box.forceActiveFocus(Qt.PopupFocusReason) }

    onOpenChanged: {
        if (open && Theme.animated)
            growing.restart();
    }
    // The window's shortcuts would take the keys first.
    Keys.onShortcutOverride: event => event.accepted = true
    Keys.onPressed: event => {
        const steps = new Map([[Qt.Key_Down, 1], [Qt.Key_Tab, 1], [Qt.Key_Up, -1], [Qt.Key_Backtab, -1]]);
        if (event.key === Qt.Key_Escape)
            dismissed();
        else if (steps.has(event.key))
            step(steps.get(event.key));
        event.accepted = true;
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: root.dismissed()
        onWheel: wheel => wheel.accepted = true
    }
    PressSign {
        at: root.hand ?? Qt.point(0, 0)
        shown: root.open && root.hand !== null
    }
    Item {
        id: sheet

        property real grown: 1

        anchors.fill: parent
        opacity: grown
        transform: Scale {
            origin { x: root.hand?.x ?? box.x + box.width / 2; y: root.hasRoomBelow ? box.y : box.y + box.height }
            xScale: 0.8 + 0.2 * sheet.grown
            yScale: xScale
        }

        NumberAnimation {
            id: growing

            target: sheet
            property: "grown"
            from: 0
            to: 1
            duration: Theme.moveTime
            easing.type: Easing.OutCubic
        }
        Shadow { anchors.fill: box }
        Rectangle {
            id: box

            readonly property real end: Theme.mirrored ? root.aside : root.width - root.aside - width

            x: root.hand ? Math.max(root.around.x, Math.min(root.around.x + root.around.width - width, root.hand.x - width / 2)) : end
            y: root.hasRoomBelow ? root.around.y + root.around.height + root.gap
                                 : Math.max(0, Math.min(root.height - height, root.around.y - root.gap - height))
            width: Math.min(root.widest, 14 * Theme.bodySize)
            height: Math.min(root.height, column.height)
            radius: Theme.rowRadius
            color: Theme.cell
            border { width: 1; color: Theme.hairline }
            antialiasing: true
            Accessible.role: Accessible.PopupMenu
            Accessible.name: root.name

            Scroller {
                id: flick

                anchors.fill: parent
                contentHeight: column.height

                Column {
                    id: column

                    width: parent.width

                    Repeater {
                        id: repeater

                        model: root.open ? root.lines : []

                        TableMenuLine {
                            required property var modelData
                            required property int index

                            width: column.width
                            enabled: modelData.enabled
                            text: modelData.text
                            checkable: modelData.checked !== undefined
                            checked: modelData.checked ?? false
                            last: index === repeater.count - 1
                            onChosen: root.lineChosen(index)
                        }
                    }
                }
            }
        }
    }
}
