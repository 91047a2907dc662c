import QtQuick

// The title of a row. One that is too long shrinks at first, then takes two lines, and is cut only then.
Text {
    id: root

    readonly property bool takesTwoLines: width > 0 && smallest.advanceWidth > width

    textFormat: Text.PlainText
    color: Theme.text
    font.pixelSize: takesTwoLines ? Theme.smallestSize : Theme.bodySize
    fontSizeMode: takesTwoLines ? Text.FixedSize : Text.HorizontalFit
    minimumPixelSize: Theme.smallestSize
    wrapMode: takesTwoLines ? Text.Wrap : Text.NoWrap
    maximumLineCount: 2
    lineHeight: takesTwoLines ? 0.95 : 1
    verticalAlignment: Text.AlignVCenter
    elide: Text.ElideRight

    TextMetrics {
        id: smallest

        font { family: root.font.family; pixelSize: Theme.smallestSize }
        text: root.text
    }
}
