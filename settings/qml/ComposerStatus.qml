import QtQuick

// Says what is being done with the message, or why that failed. A long text scrolls.
Item {
    id: root

    property alias text: status.text
    property bool warns: false
    property bool atRight: false
    property real most: 0 // its greatest height
    readonly property bool takesLines: status.hasLineBreaks
    readonly property real lineWidth: unbound.advanceWidth

    height: Math.max(0, Math.min(status.height, most))
    visible: text.length > 0

    Scroller {
        id: scroller

        anchors.fill: parent
        contentHeight: status.height
        line: Theme.footSize
        activeFocusOnTab: contentHeight > height
        Keys.onPressed: event => keys.take(event)
        Accessible.role: Accessible.AlertMessage
        Accessible.name: status.text
        Accessible.focusable: activeFocusOnTab

        WordText {
            id: status

            width: scroller.width
            color: root.warns ? Theme.warning : Theme.secondary
            font.pixelSize: Theme.footSize
            horizontalAlignment: root.atRight ? Text.AlignRight : Text.AlignLeft
            onTextChanged: scroller.contentY = 0
            Accessible.ignored: true
        }
    }
    FocusRing {
        visible: scroller.activeFocus
        anchors { fill: parent; margins: -Theme.ringGap }
    }
    TextMetrics {
        id: unbound

        font { family: status.font.family; pixelSize: Theme.footSize }
        text: status.text
    }
}
