import QtQuick

// Says something at the end of a page for some seconds.
Rectangle {
    id: root

    property string text

    visible: text.length > 0
    width: Math.min(message.implicitWidth + 2 * Theme.inset, parent.width - 2 * Theme.inset)
    height: message.implicitHeight + 2 * Theme.textMargin
    radius: Theme.rowRadius
    color: Theme.notice
    antialiasing: true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
    Accessible.ignored: !visible

    function say(words) {
        text = words;
        end.restart();
    }

    WordText {
        id: message

        anchors { left: parent.left; right: parent.right; leftMargin: Theme.inset; rightMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        text: root.text
        color: Theme.noticeText
        font.pixelSize: Theme.detailSize
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }
    Timer {
        id: end

        interval: Theme.noticeTime
        onTriggered: root.text = ""
    }
}
