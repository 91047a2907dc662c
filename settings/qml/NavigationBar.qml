import QtQuick
import QtQuick.Window
import QtQuick.Templates as T

// The bar at the top: the way back and the page's title.
Item {
    id: root

    property string title
    property bool canGoBack: false
    signal backTapped

    Rectangle {
        anchors.fill: parent
        color: Theme.bar
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1 / Screen.devicePixelRatio
        color: Theme.hairline
    }
    Text {
        id: title

        // In the middle of the bar, or of what the way back leaves of it when the title needs more.
        readonly property real edge: back.visible ? back.x + back.width + 4 : 16
        readonly property bool fits: implicitWidth <= parent.width - 2 * edge

        x: fits ? (parent.width - width) / 2 : edge
        anchors.verticalCenter: parent.verticalCenter
        width: fits ? implicitWidth : parent.width - edge - 16
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.smallestFixedSize
        text: root.title.replace(/[\r\n\u2028\u2029]+/g, " ") // one line, as there is room for one
        textFormat: Text.PlainText
        color: Theme.text
        font { pixelSize: Theme.bodySizeWithin(40); weight: Font.DemiBold }
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    T.AbstractButton {
        id: back

        visible: root.canGoBack
        anchors { left: parent.left; leftMargin: 4; verticalCenter: parent.verticalCenter }
        leftPadding: 6
        rightPadding: 8
        implicitWidth: Math.max(40, implicitContentWidth + leftPadding + rightPadding)
        implicitHeight: 40
        focusPolicy: Qt.StrongFocus
        opacity: down ? 0.4 : 1
        text: qsTr("Back")

        // The title is worth more than the word, when there is no room for both.
        readonly property real fullWidth: leftPadding + chevron.width + signs.spacing + word.implicitWidth + rightPadding
        readonly property bool wordless: title.implicitWidth > root.width - (x + fullWidth + 4) - 16

        onClicked: root.backTapped()
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()

        Accessible.name: text
        Accessible.onPressAction: clicked()

        background: Rectangle {
            visible: back.visualFocus
            radius: 8
            color: "transparent"
            border { width: 2; color: Theme.accent }
            antialiasing: true
        }
        contentItem: Row {
            id: signs

            spacing: 6

            Chevron {
                id: chevron

                anchors.verticalCenter: parent.verticalCenter
                pointsBack: true
                scaling: Theme.bodySizeWithin(40) / 17
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
                font.pixelSize: Theme.bodySizeWithin(40)
            }
        }
    }
}
