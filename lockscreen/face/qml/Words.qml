import QtQuick
import LumoraFace

// A text of the look, in its colour and size, in the box that the look gives it.
Text {
    id: words
    required property var part
    property string family: FaceFonts.text

    x: part.frame.x
    y: part.frame.y
    width: part.frame.width
    height: part.frame.height
    visible: part.visible
    opacity: part.opacity
    text: part.text
    color: part.color
    font.family: family
    font.pointSize: Math.max(1, part.size * FaceFonts.pointsPerPoint) // a size in pixels would be a whole number
    textFormat: Text.PlainText
    renderType: Text.QtRendering
    elide: Text.ElideRight
    verticalAlignment: Text.AlignVCenter
    Accessible.ignored: true
}
