import QtQuick

// A field to look for something: a magnifier before what is typed, and behind it how much has been found.
Rectangle {
    id: root

    property alias text: field.text
    property alias field: field
    property string hint // while nothing is typed
    property string note // at the end
    property string said // to assistive tools, of what has been found
    signal edited

    implicitHeight: Math.max(36, Math.ceil(field.contentHeight) + 10)
    radius: Theme.rowRadius
    color: Theme.cellDown
    border { width: field.activeFocus ? 2 : 0; color: Theme.accent }
    antialiasing: true

    MagnifierSign {
        id: sign

        anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
        scaling: Theme.bodySize / Theme.usualSize * 0.94
    }
    LineField {
        id: field

        anchors { left: sign.right; right: note.left; top: parent.top; bottom: parent.bottom; leftMargin: 8; rightMargin: 8 }
        inputMethodHints: Qt.ImhNoPredictiveText
        Accessible.role: Accessible.EditableText
        placeholderText: root.said // which the toolkit tells as the description, and nothing draws
        onTextEdited: root.edited()

        RowTitle {
            visible: field.length === 0 && field.preeditText.length === 0
            anchors.fill: parent
            text: root.hint
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            color: Theme.secondary
            Accessible.ignored: true
        }
    }
    Text {
        id: note

        anchors { right: parent.right; rightMargin: 12; verticalCenter: parent.verticalCenter }
        text: root.note
        color: Theme.secondary
        font.pixelSize: Theme.footSize
        Accessible.ignored: true
    }
}
