import QtQuick

// The title of a row. A long one first shrinks, and then takes as many lines as it needs. In a row of fixed height, it
// is cut after the second line.
WordText {
    id: root

    property real fixedHeight: 0 // of the row; 0 for one that grows with its title
    readonly property int usualSize: fixedHeight > 0 ? Theme.bodySizeWithin(fixedHeight) : Theme.bodySize
    readonly property int smallestSize: fixedHeight > 0 ? Theme.smallestFixedSize : Theme.smallestSize
    readonly property bool takesLines: width > 0 && (smallest.advanceWidth > width || hasLineBreaks)

    color: Theme.text
    largestSize: takesLines ? smallestSize : usualSize
    keepsWords: takesLines
    fontSizeMode: takesLines ? Text.FixedSize : fixedHeight > 0 ? Text.Fit : Text.HorizontalFit
    minimumPixelSize: smallestSize
    wrapMode: takesLines ? Text.Wrap : Text.NoWrap
    maximumLineCount: fixedHeight > 0 ? 2 : 2147483647
    lineHeight: takesLines ? 0.95 : 1
    verticalAlignment: Text.AlignVCenter
    elide: fixedHeight > 0 ? Text.ElideRight : Text.ElideNone

    TextMetrics {
        id: smallest

        font { family: root.font.family; pixelSize: root.smallestSize }
        text: root.text
    }
}
