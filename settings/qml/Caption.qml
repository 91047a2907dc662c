import QtQuick

// The small text above or beneath a group of rows. Of whole height, so that hairlines beneath it fall on whole pixels.
Text {
    height: Math.ceil(implicitHeight)
    leftPadding: Theme.inset
    rightPadding: Theme.inset
    textFormat: Text.PlainText
    color: Theme.secondary
    font.pixelSize: Theme.footSize
    wrapMode: Text.Wrap
    Accessible.name: text
    Accessible.ignored: text.trim().length === 0
}
