import QtQuick

// Asks whether to throw away what was edited.
Column {
    id: root

    signal deleteTapped
    signal saveTapped
    signal goOnTapped

    enabled: visible
    topPadding: Theme.lineGap

    function takeFocus() { saveButton.forceActiveFocus(Qt.PopupFocusReason) }

    Text {
        width: parent.width
        leftPadding: Theme.inset
        rightPadding: Theme.inset
        bottomPadding: 4
        text: root.visible ? qsTr("Keep what was written?") : ""
        color: Theme.secondary
        font.pixelSize: Theme.footSize
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
    TextButton {
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Delete Draft")
        tint: Theme.warning
        onClicked: root.deleteTapped()
    }
    TextButton {
        id: saveButton

        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Save Draft")
        strong: true
        onClicked: root.saveTapped()
    }
    TextButton {
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Continue Editing")
        onClicked: root.goOnTapped()
    }
}
