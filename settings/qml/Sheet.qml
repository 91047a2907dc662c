import QtQuick

// Slides from below over all but the top of the window. What is behind it is dimmed and gets no input.
Item {
    id: root

    property bool open: false
    property bool slides: true
    property real gap: 0 // above the sheet
    property string title
    readonly property alias sheetHeight: sheet.height
    default property alias content: sheet.data
    signal gone

    Accessible.role: Accessible.Dialog
    Accessible.name: title

    function slideAway() {
        if (!slides || !open)
            gone();
        open = false;
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: root.open ? 0.4 : 0

        Behavior on opacity { enabled: root.slides; NumberAnimation { duration: Theme.slideTime } }
    }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }
    Item {
        id: sheet

        x: Math.round((parent.width - width) / 2)
        y: root.open ? root.gap : parent.height
        width: Math.min(parent.width, Theme.contentWidth + 2 * Theme.inset)
        height: parent.height - root.gap

        Behavior on y {
            enabled: root.slides
            NumberAnimation {
                duration: Theme.slideTime
                easing.type: Easing.OutCubic
                onRunningChanged: if (!running && !root.open) root.gone()
            }
        }

        // The lower corners are below the window.
        Rectangle {
            width: parent.width
            height: parent.height + radius
            radius: 14
            color: Theme.cell
            antialiasing: true
        }
    }
}
