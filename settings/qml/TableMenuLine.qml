import QtQuick

// A line of a menu, which can be chosen by a tap and by keys while it has the focus.
Item {
    id: line

    property string text
    property bool last: false
    signal chosen

    height: Theme.rowHeight
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.focusable: true
    Accessible.ignored: !enabled // the toolkit does not tell that it is disabled
    Accessible.onPressAction: chosen()
    Keys.onReturnPressed: chosen()
    Keys.onEnterPressed: chosen()
    Keys.onSpacePressed: chosen()

    Rectangle {
        anchors { fill: parent; margins: Theme.ringInset }
        visible: touch.pressed
        radius: Theme.rowRadius - Theme.ringInset
        color: Theme.cellDown
        antialiasing: true
    }
    FocusRing {
        anchors { fill: parent; margins: Theme.ringInset }
        visible: line.activeFocus
        radius: Theme.rowRadius - Theme.ringInset
    }
    Hairline { visible: !line.last; anchors.bottom: parent.bottom }
    Text {
        anchors { fill: parent; leftMargin: Theme.inset; rightMargin: Theme.inset }
        text: line.text
        textFormat: Text.PlainText
        color: line.enabled ? Theme.text : Theme.placeholder
        font.pixelSize: Theme.bodySize
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.smallestFixedSize
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
    MouseArea {
        id: touch

        anchors.fill: parent
        onClicked: line.chosen()
    }
}
