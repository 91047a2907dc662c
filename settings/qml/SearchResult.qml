import QtQuick
import QtQuick.Templates as T

// A row that has been found, and above the first one of a page the way to it. What was looked for is marked.
Item {
    id: root

    required property int index
    required property string title
    required property string path
    required property bool first
    required property bool last
    required property string also
    required property string value
    required property bool opens
    required property string spokenName
    property bool current: false
    signal tapped

    readonly property real above: first ? way.height : 0

    implicitHeight: above + row.height
    Accessible.role: Accessible.ListItem
    Accessible.name: spokenName
    Accessible.selectable: true
    Accessible.selected: current
    Accessible.onPressAction: tapped()

    function marked(text, color) { return text.replace(/<b>/g, `<b><font color="${color}">`).replace(/<\/b>/g, "</font></b>") }
    // The page itself stands out.
    function drawnPath() {
        const steps = marked(path, Theme.accent).split(" › ");
        const page = steps.pop();
        return steps.map(step => step + " › ").join("") + `<b><font color="${Theme.text}">${page}</font></b>`;
    }

    Text {
        id: way

        anchors { left: parent.left; leftMargin: Theme.inset; right: parent.right; rightMargin: Theme.inset }
        height: Math.ceil(implicitHeight)
        visible: root.first
        topPadding: root.index === 0 ? 8 : Theme.groupGap
        bottomPadding: 7
        text: root.first ? root.drawnPath() : " "
        textFormat: Text.StyledText
        color: Theme.secondary
        font.pixelSize: Theme.footSize
        elide: Text.ElideMiddle
        horizontalAlignment: Theme.mirrored ? Text.AlignLeft : undefined
        Accessible.ignored: true
    }
    T.AbstractButton {
        id: row

        y: root.above
        width: parent.width
        height: Math.max(Theme.rowHeight, implicitContentHeight + 2 * (root.also.length > 0 ? 7 : Theme.rowMargin))
        leftPadding: Theme.inset
        rightPadding: Theme.inset
        focusPolicy: Qt.NoFocus // the field keeps it
        hoverEnabled: true
        onClicked: root.tapped()

        Accessible.ignored: true

        background: Cell {
            first: root.first
            last: root.last
            down: row.down
            hovered: row.hovered
            focused: root.current
            ground: row.down ? Theme.cellDown
                : root.current ? Qt.tint(Theme.cell, Qt.alpha(Theme.accent, 0.1))
                : row.hovered ? Qt.tint(Theme.cell, Qt.alpha(Theme.cellDown, 0.4)) : Theme.cell
        }
        contentItem: Item {
            implicitHeight: words.implicitHeight

            Column {
                id: words

                anchors { left: parent.left; right: end.left; rightMargin: Theme.textGap; verticalCenter: parent.verticalCenter }

                Text {
                    width: parent.width
                    text: root.marked(root.title, Theme.accent)
                    textFormat: Text.StyledText
                    color: Theme.text
                    font.pixelSize: Theme.bodySize
                    elide: Text.ElideRight
                    horizontalAlignment: Theme.mirrored ? Text.AlignLeft : undefined
                    Accessible.ignored: true
                }
                Text {
                    visible: root.also.length > 0
                    width: parent.width
                    text: qsTr("also: %1").arg(root.also.replace(/\s+/g, " "))
                    textFormat: Text.PlainText
                    color: Theme.secondary
                    font.pixelSize: Theme.footSize
                    elide: Text.ElideRight
                    horizontalAlignment: Theme.mirrored ? Text.AlignLeft : undefined
                    Accessible.ignored: true
                }
            }
            Row {
                id: end

                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                spacing: Theme.signGap

                Text {
                    width: Math.min(implicitWidth, root.width / 3)
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.value
                    textFormat: Text.PlainText
                    color: Theme.secondary
                    font.pixelSize: Theme.bodySize
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                Chevron {
                    visible: root.opens
                    anchors.verticalCenter: parent.verticalCenter
                }
            }
        }
    }
}
