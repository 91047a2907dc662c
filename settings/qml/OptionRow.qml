import QtQuick
import Lumora

// One option of an option list; the stored one has the check mark.
TappableRow {
    id: control

    text: row.title
    checked: row.marked
    Accessible.role: Accessible.RadioButton
    Accessible.checkable: true
    Accessible.checked: row.marked
    Accessible.onToggleAction: clicked()

    contentItem: Item {
        implicitHeight: title.implicitHeight

        Text {
            id: title

            anchors { left: parent.left; right: mark.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            text: control.text
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.bodySize
            wrapMode: Text.Wrap
        }
        CheckMark {
            id: mark

            visible: control.row.marked
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        }
    }
}
