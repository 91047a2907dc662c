import QtQuick
import Lumora

// Calls an operation of the page.
TappableRow {
    id: control

    text: row.title
    Accessible.role: Accessible.Button

    contentItem: Text {
        text: control.text
        textFormat: Text.PlainText
        color: Theme.accent
        font.pixelSize: Theme.bodySize
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.smallestSize
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideMiddle
    }
}
