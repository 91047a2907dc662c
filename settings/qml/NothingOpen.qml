import QtQuick

// What stands beside a list of which no row is open.
Rectangle {
    color: Theme.page

    WordText {
        anchors { left: parent.left; right: parent.right; margins: 2 * Theme.inset; verticalCenter: parent.verticalCenter }
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Choose a row")
        color: Theme.secondary
        Accessible.role: Accessible.StaticText
        Accessible.focusable: false
        Accessible.name: text
    }
}
