import QtQuick
import LumoraFace

// The lock screen in the shape of a phone, as large as there is room for; above it that it is a preview, and a menu.
FocusScope {
    id: pane
    required property FaceModel face
    property bool animated: true
    property bool landscape: false
    property bool dark: false
    property color ground: dark ? "#2a2a2e" : "#e9e9ef"
    readonly property color text: dark ? "#e4e4ea" : "#3a3a3e"
    readonly property real rim: Math.max(4, Math.round(12 * scaling))
    property real headHeight: 44
    readonly property real footHeight: foot.text === "" ? 0 : foot.implicitHeight + 12
    readonly property size shape: landscape ? Qt.size(844, 390) : Qt.size(390, 844)
    readonly property real scaling: Math.max(0.05, Math.min((width - 16) / (shape.width + 24),
                                                            (height - headHeight - footHeight - 12) / (shape.height + 24)))

    Accessible.role: Accessible.Pane
    Accessible.name: "Lock screen, preview"
    Rectangle {
        anchors.fill: parent
        color: pane.ground
    }
    Item {
        id: head
        width: parent.width
        height: pane.headHeight
        Text {
            anchors.centerIn: parent
            text: "Preview"
            color: pane.text
            font.pixelSize: 15
            font.weight: Font.DemiBold
        }
        FaceMenuButton {
            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            color: pane.text
            onClicked: menu.open()
        }
    }
    Face {
        id: screen
        face: pane.face
        animated: pane.animated
        focus: true
        activeFocusOnTab: true
        width: Math.floor(pane.shape.width * pane.scaling)
        height: Math.floor(pane.shape.height * pane.scaling)
        x: Math.round((parent.width - width) / 2)
        y: pane.headHeight + Math.round((parent.height - pane.headHeight - pane.footHeight - height) / 2)
    }
    Rectangle { // so round that the corners of the screen stay within it
        id: rim
        x: screen.x - pane.rim
        y: screen.y - pane.rim
        width: screen.width + 2 * pane.rim
        height: screen.height + 2 * pane.rim
        radius: pane.rim * 3.1
        color: "transparent"
        border.width: pane.rim
        border.color: "#15161c"
    }
    Rectangle { // the edge catches some light
        anchors.fill: rim
        radius: rim.radius
        visible: pane.rim > 5
        color: "transparent"
        border.width: 1
        border.color: "#4c4f5c"
    }
    Text {
        id: foot
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 8
        x: 16
        width: parent.width - 32
        visible: text !== ""
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: pane.text
        font.pixelSize: 13
        text: pane.face.tweakAnswers ? "" : "Lumora is not running. This is the screen without it."
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    FaceMenu {
        id: menu
        anchors.fill: parent
        face: pane.face
        below: pane.headHeight
        landscape: pane.landscape
        ground: pane.dark ? "#3a3a3e" : "#ffffff"
        text: pane.dark ? "#ffffff" : "#000000"
        onTurned: pane.landscape = !pane.landscape
        onClosed: screen.forceActiveFocus()
    }
}
