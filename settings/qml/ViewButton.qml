import QtQuick

// Opens the menu of what the window shows side by side.
PushButton {
    id: root

    implicitWidth: Theme.buttonHeight
    implicitHeight: Theme.buttonHeight
    opacity: down ? Theme.downOpacity : 1
    text: qsTr("View")
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: text
    Accessible.onPressAction: clicked()

    background: FocusRing { visible: root.visualFocus }
    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: 4

            Repeater {
                model: 3

                Rectangle {
                    width: 4.5
                    height: width
                    radius: width / 2
                    color: Theme.accent
                    antialiasing: true
                }
            }
        }
    }
}
