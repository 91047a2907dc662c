import QtQuick
import QtQuick.Templates as T
import Lumora

// The whole row is the switch. It follows the user at once, and settles when the page has read its value.
T.Switch {
    id: control

    required property RowModel row
    property bool first: false
    property bool last: false
    readonly property Item stop: control

    implicitHeight: Theme.rowHeightFor(implicitContentHeight)
    leftPadding: mirrored ? Theme.inset : Theme.contentInset(row.icon)
    rightPadding: mirrored ? Theme.contentInset(row.icon) : Theme.inset
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    text: row.title
    checked: row.on

    function flip() {
        toggle();
        row.toggle(checked);
    }

    onToggled: row.toggle(checked)
    Keys.forwardTo: [keys]

    ButtonKeys {
        id: keys

        onReleased: control.flip()
    }

    Connections {
        target: control.row
        function onValueRead() { control.checked = control.row.on }
    }

    Accessible.name: row.accessibleName
    Accessible.description: row.accessibleDescription
    // By itself, the toolkit would flip the switch without a signal.
    Accessible.onToggleAction: flip()
    Accessible.onPressAction: flip()

    background: Cell {
        row: control.row
        first: control.first
        last: control.last
        hovered: control.hovered
        focused: control.visualFocus
    }
    contentItem: Item {
        implicitHeight: title.implicitHeight

        RowTitle {
            id: title

            anchors { fill: parent; rightMargin: track.width + Theme.signGap }
            text: control.text
        }
    }
    indicator: Rectangle {
        id: track

        x: control.mirrored ? control.leftPadding : control.width - width - control.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: 51
        implicitHeight: 31
        radius: height / 2
        color: control.checked ? Theme.on : Theme.off // at once, which answers a frame sooner than what moves
        antialiasing: true

        Knob {
            x: 2 + control.visualPosition * (parent.width - width - 4)
            anchors.verticalCenter: parent.verticalCenter
            width: control.down ? 31 : 27
            height: 27

            Behavior on x { enabled: Theme.animated && !control.down; MoveAnimation {} }
            Behavior on width { enabled: Theme.animated; NumberAnimation { duration: 100 } }
        }
    }
}
