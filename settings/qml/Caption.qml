import QtQuick

// The small text above or beneath a group of rows. Of whole height, so that hairlines below it fall on whole pixels.
WordText {
    height: Math.ceil(implicitHeight)
    leftPadding: Theme.inset
    rightPadding: Theme.inset
    color: Theme.secondary
    font.pixelSize: Theme.footSize
    Accessible.name: text
    Accessible.ignored: text.trim().length === 0
}
