import QtQuick
import QtQuick.Templates as T
import Lumora

// Shows what would change, value by value, before anything does; each can be left out.
FocusScope {
    id: root

    required property DifferencesModel differences
    property string title
    property string action // what the button says, with the number of changes for %1
    property real gap: 0
    property bool hasKeys: true
    signal accepted
    signal gone

    function accept() {
        if (!sheet.open || differences.chosenCount === 0)
            return;
        accepted();
        sheet.slideAway();
    }

    Component.onCompleted: {
        sheet.open = true;
        const first = list.count > 0 ? list.itemAt(0) : cancelButton;
        first.forceActiveFocus(Qt.PopupFocusReason);
    }
    KeyOnce {
        sequence: "Escape"
        enabled: sheet.open && root.hasKeys
        onPressed: sheet.slideAway()
    }
    KeyOnce {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: sheet.open && root.hasKeys
        onPressed: root.accept()
    }
    Keys.onPressed: event => {
        const steps = new Map([[Qt.Key_Down, 1], [Qt.Key_Up, -1]]);
        event.accepted = steps.has(event.key);
        if (!event.accepted)
            return;
        const all = Array.from({ length: list.count }, (_, i) => list.itemAt(i)).filter(item => item.enabled);
        const at = all.findIndex(item => item.activeFocus);
        all[Math.max(0, Math.min(all.length - 1, at + steps.get(event.key)))]?.forceActiveFocus(Qt.TabFocusReason);
    }

    Sheet {
        id: sheet

        anchors.fill: parent
        gap: root.gap
        title: root.title
        slides: Theme.animated
        onGone: root.gone()

        Item {
            id: head

            width: parent.width
            height: 52

            TextButton {
                id: cancelButton

                anchors { left: parent.left; leftMargin: Theme.inset - leftPadding; verticalCenter: parent.verticalCenter }
                text: qsTr("Cancel")
                onClicked: sheet.slideAway()
            }
            Text {
                anchors.centerIn: parent
                width: Math.min(implicitWidth, parent.width - 2 * Math.max(cancelButton.width, acceptButton.width) - 2 * Theme.inset)
                text: root.title
                textFormat: Text.PlainText
                elide: Text.ElideRight
                color: Theme.text
                font { pixelSize: Theme.barSize; weight: Font.DemiBold }
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            TextButton {
                id: acceptButton

                anchors { right: parent.right; rightMargin: Theme.inset - rightPadding; verticalCenter: parent.verticalCenter }
                text: root.action.arg(root.differences.chosenCount)
                strong: true
                enabled: root.differences.chosenCount > 0
                onClicked: root.accept()
            }
            Hairline {
                anchors.bottom: parent.bottom
                height: 1
            }
        }
        Scroller {
            id: scroller

            anchors { left: parent.left; right: parent.right; top: head.bottom; bottom: parent.bottom }
            contentHeight: column.height + Theme.endGap

            Column {
                id: column

                width: scroller.width

                Repeater {
                    model: root.differences.notes

                    WordText {
                        required property string modelData

                        x: Theme.inset
                        width: column.width - 2 * Theme.inset
                        topPadding: Theme.lineGap
                        bottomPadding: Theme.lineGap
                        text: modelData
                        color: Theme.secondary
                        font.pixelSize: Theme.detailSize
                        Accessible.role: Accessible.StaticText
                        Accessible.name: text
                    }
                }

                Repeater {
                    model: root.differences.notes.length > 0 ? 1 : 0

                    Item {
                        width: column.width
                        height: Theme.lineGap

                        Hairline { anchors.bottom: parent.bottom }
                    }
                }
                Repeater {
                    id: list

                    model: root.differences

                    T.CheckBox {
                        id: line

                        required property int index
                        required property string title
                        required property string path
                        required property string now
                        required property string then
                        required property bool possible
                        required property bool chosen
                        readonly property string change: possible ? now + " → " + then : qsTr("%1, as it had no value before").arg(now)

                        width: column.width
                        implicitHeight: Math.max(Theme.rowHeight, texts.height + 2 * Theme.textMargin)
                        focusPolicy: Qt.StrongFocus
                        enabled: possible
                        checked: chosen
                        function flip() { root.differences.choose(index, !chosen) }

                        onToggled: root.differences.choose(index, checked)
                        // By itself, the toolkit would flip it without a signal.
                        Accessible.onToggleAction: flip()
                        Accessible.onPressAction: flip()
                        Keys.forwardTo: [keys]
                        onActiveFocusChanged: if (activeFocus) scroller.show(y, y + height)
                        Accessible.name: title
                        Accessible.description: path.length > 0 ? path + ": " + change : change

                        ButtonKeys {
                            id: keys

                            onReleased: root.accept()
                        }

                        indicator: Rectangle {
                            x: line.mirrored ? line.width - width - Theme.inset : Theme.inset
                            anchors.verticalCenter: parent.verticalCenter
                            width: 24
                            height: 24
                            radius: 12
                            color: line.checked ? Theme.accent : "transparent"
                            border { width: line.checked ? 0 : 1.5; color: Theme.tertiary }
                            opacity: line.enabled ? 1 : 0.4
                            antialiasing: true

                            CheckMark {
                                visible: line.checked
                                anchors.centerIn: parent
                                color: Theme.onColor
                                scaling: 0.9
                            }
                        }
                        contentItem: Item {
                            Column {
                                id: texts

                                x: line.mirrored ? Theme.inset : Theme.inset + 24 + Theme.textGap
                                width: parent.width - 2 * Theme.inset - 24 - Theme.textGap
                                anchors.verticalCenter: parent.verticalCenter
                                spacing: 2

                                WordText {
                                    width: parent.width
                                    text: line.title
                                    color: line.enabled ? Theme.text : Theme.placeholder
                                }
                                WordText {
                                    width: parent.width
                                    visible: text.length > 0
                                    text: line.path
                                    color: Theme.secondary
                                    font.pixelSize: Theme.footSize
                                }
                                WordText {
                                    width: parent.width
                                    text: line.change
                                    color: Theme.secondary
                                    font.pixelSize: Theme.detailSize
                                }
                            }
                        }
                        background: Item {
                            FocusRing {
                                anchors { fill: parent; margins: Theme.ringInset + 3 }
                                visible: line.visualFocus
                            }
                            Hairline { anchors { leftMargin: Theme.inset + 24 + Theme.textGap; bottom: parent.bottom } }
                        }
                    }
                }
            }
        }
    }
}
