import QtQuick
import LumoraFace

// The words, and a rail with a bead of light to be slid along it: below them, or before them where there is little height.
Item {
    id: hint
    required property FaceModel face
    readonly property var part: face.look.slideHint
    readonly property bool inline: face.landscape
    readonly property real unit: face.unit
    readonly property real slid: Math.max(0, Math.min(rail.width, face.pulled === "slideHint" ? face.dragged.x : 0))

    x: part.frame.x
    y: part.frame.y
    width: part.frame.width
    height: part.frame.height
    visible: part.visible

    Text {
        x: hint.inline ? 134 * hint.unit : 0
        width: hint.width - x
        horizontalAlignment: hint.inline ? Text.AlignLeft : Text.AlignHCenter
        text: hint.part.text
        color: hint.part.color
        opacity: 1 - hint.slid / rail.width
        font.family: FaceFonts.text
        font.weight: Font.Light
        font.pointSize: hint.part.size * FaceFonts.pointsPerPoint
        textFormat: Text.PlainText
        elide: Text.ElideRight
        renderType: Text.QtRendering
        Accessible.ignored: true
    }
    Glyph {
        id: rail
        name: "rail"
        color: hint.part.color
        width: (hint.inline ? 106 : 126) * hint.unit
        height: 14 * hint.unit
        x: hint.inline ? 12 * hint.unit : (hint.width - width) / 2
        y: (hint.inline ? 5 : 30) * hint.unit
    }
    Glyph {
        name: "bead"
        color: hint.part.color
        width: 24 * hint.unit
        height: width
        x: rail.x - width / 2 + hint.slid
        y: rail.y + (rail.height - height) / 2
    }
    Action {
        anchors.fill: parent
        face: hint.face
        gesture: "slide"
        name: hint.part.text
    }
}
