import QtQuick

// A text of as many lines as it needs, all in one size.
Text {
    readonly property bool hasLineBreaks: /[\n\r\u2028\u2029]/.test(text)

    font.pixelSize: Theme.bodySize
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    // By itself, a text begins where those of its own language do.
    horizontalAlignment: Theme.mirrored ? Text.AlignLeft : undefined
}
