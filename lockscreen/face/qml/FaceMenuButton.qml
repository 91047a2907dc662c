import QtQuick

// Three dots.
Item {
    id: button
    property color color: "black"
    signal clicked

    width: 44
    height: 44
    activeFocusOnTab: true
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: "Menu of the preview"
    Accessible.onPressAction: clicked()
    Keys.onSpacePressed: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Rectangle {
        anchors.fill: parent
        anchors.margins: 6
        radius: 8
        color: "transparent"
        border.width: button.activeFocus ? 2 : 0
        border.color: button.color
    }
    Row {
        anchors.centerIn: parent
        spacing: 3
        Repeater {
            model: 3
            Rectangle {
                width: 4
                height: 4
                radius: 2
                color: button.color
            }
        }
    }
    MouseArea {
        anchors.fill: parent
        onClicked: button.clicked()
    }
}
