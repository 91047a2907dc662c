import QtQuick

// A line of a menu, which can be chosen by a tap and by keys while it has the focus.
Item {
    id: line

    property string text
    property bool last: false
    property bool checkable: false
    property bool checked: false
    signal chosen

    height: Theme.rowHeight
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.focusable: true
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.ignored: !enabled // the toolkit does not tell that it is disabled
    Accessible.onPressAction: chosen()
    Keys.onReturnPressed: chosen()
    Keys.onEnterPressed: chosen()
    Keys.onSpacePressed: chosen()

    Rectangle {
        anchors { fill: parent; margins: Theme.ringInset }
        visible: touch.containsMouse
        radius: Theme.rowRadius - Theme.ringInset
        color: touch.pressed ? Theme.cellDown : Qt.tint(Theme.cell, Qt.alpha(Theme.cellDown, 0.4))
        antialiasing: true
    }
    FocusRing {
        anchors { fill: parent; margins: Theme.ringInset }
        visible: line.activeFocus
        radius: Theme.rowRadius - Theme.ringInset
    }
    Hairline { visible: !line.last; anchors.bottom: parent.bottom }
    WordText {
        anchors { fill: parent; leftMargin: Theme.inset; rightMargin: line.checkable ? 2 * Theme.inset + mark.width : Theme.inset }
        text: line.text
        wrapMode: Text.NoWrap
        color: line.enabled ? Theme.text : Theme.placeholder
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.smallestSize
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
    CheckMark {
        id: mark

        visible: line.checked
        anchors { right: parent.right; rightMargin: Theme.inset; verticalCenter: parent.verticalCenter }
    }
    MouseArea {
        id: touch

        anchors.fill: parent
        hoverEnabled: true
        onClicked: line.chosen()
    }
}
