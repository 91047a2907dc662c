import QtQuick

// The title of a row. A long one first shrinks, and then takes as many lines as it needs.
WordText {
    id: root

    readonly property bool takesLines: width > 0 && (smallest.advanceWidth > width || hasLineBreaks)

    color: Theme.text
    largestSize: takesLines ? Theme.smallestSize : Theme.bodySize
    keepsWords: takesLines
    fontSizeMode: takesLines ? Text.FixedSize : Text.HorizontalFit
    minimumPixelSize: Theme.smallestSize
    wrapMode: takesLines ? Text.Wrap : Text.NoWrap
    lineHeight: takesLines ? 0.95 : 1
    verticalAlignment: Text.AlignVCenter

    TextMetrics {
        id: smallest

        font { family: root.font.family; pixelSize: Theme.smallestSize }
        text: root.text
    }
}
