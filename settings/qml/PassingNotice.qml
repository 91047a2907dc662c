import QtQuick

// Says something at the end of a page for some seconds, perhaps with a button that does something about it. It stays as
// long as the button has the focus or the mouse is over it.
Rectangle {
    id: root

    property string text
    property string action // the button's text, empty for none
    property bool acts: true // what the button does can be done now
    signal acted
    signal focusLost // as it has gone

    visible: text.length > 0
    width: Math.min(line.implicitWidth + 2 * Theme.inset, parent.width - 2 * Theme.inset)
    height: line.implicitHeight + 2 * Theme.textMargin
    radius: Theme.rowRadius
    color: Theme.notice
    antialiasing: true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
    Accessible.ignored: !visible

    function say(words, button = "") {
        action = button;
        text = words;
        if (!over.hovered && !button.activeFocus)
            end.restart();
    }
    function hide() {
        const hadFocus = button.activeFocus;
        text = "";
        if (hadFocus)
            focusLost();
    }

    HoverHandler { id: over }
    Row {
        id: line

        readonly property real buttonWidth: button.visible ? button.implicitWidth + spacing : 0

        x: Theme.inset
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.buttonPadding

        WordText {
            id: message

            width: Math.min(implicitWidth, root.parent.width - 4 * Theme.inset - line.buttonWidth)
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: Theme.noticeText
            font.pixelSize: Theme.detailSize
            horizontalAlignment: Text.AlignHCenter
            Accessible.ignored: true
        }
        TextButton {
            id: button

            visible: root.action.length > 0 && root.acts
            anchors.verticalCenter: parent.verticalCenter
            text: root.action
            strong: true
            tint: Theme.noticeText
            Accessible.ignored: !root.visible || !visible
            onClicked: {
                root.hide();
                root.acted();
            }
        }
    }
    Timer {
        id: end

        interval: root.action.length > 0 ? Theme.actionTime : Theme.noticeTime
        running: root.visible && !over.hovered && !button.activeFocus
        onTriggered: root.hide()
    }
}
