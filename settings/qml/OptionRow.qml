import QtQuick
import QtQuick.Templates as T
import Lumora

// One option of an option list; the stored one has the check mark. The toolkit's own radio button in place of a
// TappableRow, so that assistive tools are told of one.
T.RadioButton {
    id: control

    required property RowModel row
    property bool first: false
    property bool last: false
    property bool reached: true // by the Tab key
    readonly property Item stop: control

    implicitHeight: Theme.rowHeightFor(implicitContentHeight)
    leftPadding: mirrored ? Theme.inset : Theme.contentInset(row.icon)
    rightPadding: mirrored ? Theme.contentInset(row.icon) : Theme.inset
    focusPolicy: reached ? Qt.StrongFocus : Qt.ClickFocus
    hoverEnabled: true
    text: row.title
    // The page says which one is stored.
    checkable: false
    autoExclusive: false
    checked: row.marked

    onClicked: row.tap()
    Keys.forwardTo: [keys]

    ButtonKeys {
        id: keys

        onReleased: control.clicked()
    }

    Accessible.name: row.accessibleName
    Accessible.description: row.accessibleDescription
    Accessible.focusable: true
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()

    background: Cell {
        row: control.row
        first: control.first
        last: control.last
        down: control.down
        hovered: control.hovered
        focused: control.visualFocus
    }
    contentItem: Item {
        implicitHeight: title.implicitHeight

        WordText {
            id: title

            anchors { left: parent.left; right: mark.left; rightMargin: Theme.signGap; verticalCenter: parent.verticalCenter }
            text: control.text
            color: Theme.text
        }
        CheckMark {
            id: mark

            visible: control.row.marked
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        }
    }
}
