import QtQuick
import LumoraFace

// What a card says in place of a drawing.
Item {
    id: fault
    required property ViewCard card

    Text {
        id: words
        width: parent.width
        y: (parent.height - height - (restart.visible ? restart.height + 12 * fault.card.unit : 0)) / 2
        horizontalAlignment: Text.AlignHCenter
        text: fault.card.stopped ? "stopped" : "draws too much"
        color: fault.card.ink
        font.family: FaceFonts.text
        font.pointSize: 15 * fault.card.unit * FaceFonts.pointsPerPoint
        renderType: Text.QtRendering
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Rectangle {
        id: restart
        visible: fault.card.stopped
        anchors.horizontalCenter: parent.horizontalCenter
        y: words.y + words.height + 12 * fault.card.unit
        width: label.implicitWidth + 40 * fault.card.unit
        height: 36 * fault.card.unit
        radius: height / 2
        color: Qt.alpha(fault.card.ink, pressing.pressed ? 0.3 : 0.14)
        border.width: activeFocus ? 2 : 1
        border.color: Qt.alpha(fault.card.ink, activeFocus ? 0.9 : 0.3)
        activeFocusOnTab: visible
        onVisibleChanged: if (!visible) focus = false
        Keys.onReturnPressed: event => press(event)
        Keys.onEnterPressed: event => press(event)
        Keys.onSpacePressed: event => press(event)
        function press(event) {
            if (!event.isAutoRepeat)
                fault.card.restart();
        }
        Accessible.role: Accessible.Button
        Accessible.name: "Restart"
        Accessible.focusable: true
        Accessible.onPressAction: fault.card.restart()
        Text {
            id: label
            anchors.centerIn: parent
            text: "Restart"
            color: fault.card.ink
            font.family: FaceFonts.text
            font.weight: Font.DemiBold
            font.pointSize: 15 * fault.card.unit * FaceFonts.pointsPerPoint
            renderType: Text.QtRendering
            Accessible.ignored: true
        }
        MouseArea {
            id: pressing
            anchors.fill: parent
            onClicked: fault.card.restart()
        }
    }
}
