import QtQuick
import LumoraFace

// A key of the passcode view: a ring with a digit, and the letters that phones have below it.
Item {
    id: key
    required property FaceModel face
    required property var part
    required property int index
    readonly property string letters: ["", "ABC", "DEF", "GHI", "JKL", "MNO", "PQRS", "TUV", "WXYZ", ""][index] ?? ""
    readonly property real diameter: part.frame.width
    readonly property string path: `keys[${index}]`

    x: part.frame.x
    y: part.frame.y
    width: diameter
    height: diameter
    opacity: part.opacity

    Rectangle {
        anchors.fill: parent
        visible: key.part.shade.opacity > 0
        radius: width / 2
        color: key.part.shade.color
        opacity: key.part.shade.opacity
    }
    Glyph {
        anchors.fill: parent
        name: "ring"
        color: key.part.color
        level: key.face.pressed === key.path ? 1 : 0
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        y: key.diameter * (key.letters === "" ? 0.22 : 0.13)
        text: key.part.text
        color: key.part.color
        font.family: FaceFonts.display
        font.weight: Font.Light
        font.pointSize: Math.max(1, key.part.size * FaceFonts.pointsPerPoint)
        renderType: Text.QtRendering
        Accessible.ignored: true
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.horizontalCenterOffset: font.letterSpacing / 2
        y: key.diameter * 0.66
        text: key.letters
        visible: text !== ""
        color: key.part.color
        font.family: FaceFonts.text
        font.weight: Font.DemiBold
        font.pointSize: Math.max(1, key.diameter * 0.13 * FaceFonts.pointsPerPoint)
        font.letterSpacing: 1.6 * key.face.unit
        renderType: Text.QtRendering
        Accessible.ignored: true
    }
    Action {
        anchors.fill: parent
        face: key.face
        gesture: "tap " + key.path
        name: key.part.text
    }
}
