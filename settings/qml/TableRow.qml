import QtQuick
import Lumora

// One row of a table: the sign to delete or insert it, a title, a check mark, and the handle to move it by. Empty while
// it is in the hand.
Cell {
    id: root

    property string title
    property var titleFont    // undefined for the usual one
    property bool inView: true // no font is opened for it before
    property bool marked: false
    property bool movable: false
    property int editingStyle: 0 // 1 to delete, 2 to insert, 0 for no sign
    property bool indented: false
    property bool selected: false
    property bool fades: false // when it is no longer selected
    readonly property alias fading: fade.running
    // The signs are as large as the title, whose size the height of the row limits.
    readonly property real scaling: Theme.bodySizeWithin(height) / Theme.usualSize

    indent: indented || editingStyle !== 0 ? 38 : 0

    onSelectedChanged: if (fades && !selected && Theme.animated) fade.restart()
    onDownChanged: if (down) fade.stop()

    ColorAnimation {
        id: fade

        target: root
        property: "ground"
        from: Theme.cellDown
        to: Theme.cell
        duration: Theme.fadeTime
    }
    Loader {
        active: root.editingStyle !== 0
        visible: !root.empty
        anchors { left: parent.left; leftMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        sourceComponent: Rectangle {
            width: 22
            height: width
            radius: width / 2
            color: root.editingStyle === 1 ? Theme.warning : Theme.on
            antialiasing: true

            Rectangle { anchors.centerIn: parent; width: 12; height: 2; color: Theme.onColor }
            Rectangle { anchors.centerIn: parent; width: 2; height: 12; color: Theme.onColor; visible: root.editingStyle === 2 }
        }
    }
    Item {
        visible: !root.empty
        anchors { fill: parent; leftMargin: root.indent + Theme.contentInset(root.icon); rightMargin: Theme.inset }

        // In a font of its own, if that can be drawn.
        Loader {
            id: drawn

            active: root.titleFont !== undefined
            anchors { left: parent.left; right: signs.left; rightMargin: Theme.signGap; top: parent.top; bottom: parent.bottom }
            sourceComponent: FontTitle {
                text: root.title
                titleFont: root.titleFont
                color: Theme.text
                letterScale: root.scaling
                inView: root.inView
                mirrored: Theme.mirrored
            }
        }
        // In the one size of the whole list, as long as there is room. Only letters that are higher than the row are smaller.
        WordText {
            visible: !drawn.item?.drawn
            anchors { left: parent.left; right: signs.left; rightMargin: Theme.signGap; verticalCenter: parent.verticalCenter }
            height: parent.height - 1 // odd like a line's, for letters on whole pixels
            text: root.title
            wrapMode: Text.NoWrap
            maximumLineCount: 1
            color: Theme.text
            font.pixelSize: Math.max(1, Theme.bodySizeWithin(root.height))
            fontSizeMode: Text.VerticalFit
            minimumPixelSize: 1
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
        }
        Row {
            id: signs

            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: 12

            CheckMark {
                visible: root.marked
                anchors.verticalCenter: parent.verticalCenter
                scaling: root.scaling
            }
            Handle {
                visible: root.movable
                anchors.verticalCenter: parent.verticalCenter
                scaling: Math.min(2, root.scaling)
            }
        }
    }
}
