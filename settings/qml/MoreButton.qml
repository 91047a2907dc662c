import QtQuick

// Opens the menu of the window: what can be taken back, and what is shown side by side.
PushButton {
    id: root

    implicitWidth: Theme.buttonHeight
    implicitHeight: Theme.buttonHeight
    opacity: down ? Theme.downOpacity : 1
    text: qsTr("More")
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: text
    Accessible.ignored: !enabled
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
