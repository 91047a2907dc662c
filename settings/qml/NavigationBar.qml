import QtQuick

// The bar at the top: the way back and the page's title.
Item {
    id: root

    property string title
    property bool canGoBack: false
    property string backTo // in a word, where the way back leads; empty for the page before
    property real trailing: 0 // what is left free at its end
    signal backTapped

    Rectangle {
        anchors.fill: parent
        color: Theme.bar
    }
    Hairline { anchors.bottom: parent.bottom }
    Text {
        id: title

        // In the middle of the bar, or of the room beside the way back if the title needs more.
        readonly property real edge: back.visible ? 4 + back.width + 4 : Theme.inset
        readonly property real end: Math.max(Theme.inset, root.trailing)
        readonly property bool fits: implicitWidth <= parent.width - 2 * Math.max(edge, end)

        x: fits ? (parent.width - width) / 2 : Theme.mirrored ? end : edge
        anchors.verticalCenter: parent.verticalCenter
        width: fits ? implicitWidth : parent.width - edge - end
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.smallestSize
        text: root.title.replace(/[\r\n\u2028\u2029]+/g, " ") // there is room for one line
        textFormat: Text.PlainText
        color: Theme.text
        font { pixelSize: Theme.barSize; weight: Font.DemiBold }
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    PushButton {
        id: back

        visible: root.canGoBack
        anchors { left: parent.left; leftMargin: 4; verticalCenter: parent.verticalCenter }
        leftPadding: mirrored ? Theme.buttonPadding : 6
        rightPadding: mirrored ? 6 : Theme.buttonPadding
        implicitWidth: Math.max(Theme.buttonHeight, implicitContentWidth + leftPadding + rightPadding)
        implicitHeight: Theme.buttonHeight
        opacity: down ? Theme.downOpacity : 1
        text: root.backTo.length > 0 ? root.backTo : qsTr("Back")

        // The word gives way to the title when there is no room for both.
        readonly property real fullWidth: leftPadding + chevron.width + signs.spacing + word.implicitWidth + rightPadding
        readonly property bool wordless: title.implicitWidth > root.width - (4 + fullWidth + 4) - title.end

        onClicked: root.backTapped()

        Accessible.name: root.backTo.length > 0 ? qsTr("Back to %1").arg(root.backTo) : text
        Accessible.ignored: !enabled
        Accessible.onPressAction: clicked()

        background: FocusRing { visible: back.visualFocus }
        contentItem: Row {
            id: signs

            spacing: 6

            Chevron {
                id: chevron

                anchors.verticalCenter: parent.verticalCenter
                pointsBack: true
                scaling: Theme.barSize / Theme.usualSize
                size: 9 * scaling
                stroke: 2.5 * scaling
                color: Theme.accent
            }
            Text {
                id: word

                visible: !back.wordless
                anchors.verticalCenter: parent.verticalCenter
                text: back.text
                color: Theme.accent
                font.pixelSize: Theme.barSize
            }
        }
    }
}
