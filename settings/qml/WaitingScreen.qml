import QtQuick

// Stands in for a page while the main thread is busy with it: says what it waits for and, once nothing can come any
// more, offers to try again.
Rectangle {
    id: root

    required property string headline
    required property string explanation
    property string details
    required property bool lost
    signal restartTapped

    color: Theme.page
    Accessible.role: Accessible.AlertMessage
    Accessible.name: headline
    Accessible.description: explanation

    // Only the button can have the focus.
    Keys.onPressed: event => flick.keys.take(event)

    // Large texts may not fit into a low window.
    Scroller {
        id: flick

        anchors.fill: parent
        contentHeight: Math.max(height, column.height + 2 * Theme.inset)
        interactive: contentHeight > height
        onHeightChanged: showButton()
        onContentHeightChanged: showButton()

        function showButton() {
            const top = restart.mapToItem(contentItem, 0, 0).y;
            if (restart.activeFocus)
                show(top - Theme.focusGap, top + restart.height + Theme.focusGap);
        }

        Column {
            id: column

            anchors { centerIn: parent; verticalCenterOffset: -Math.min(parent.height * 0.06, (parent.height - height) / 2) }
            width: Math.min(parent.width, 440) - 4 * Theme.inset
            spacing: 12

            Item {
                width: parent.width
                height: 52

                Spinner {
                    visible: !root.lost
                    anchors.horizontalCenter: parent.horizontalCenter
                }
                Rectangle {
                    visible: root.lost
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: 36
                    height: 36
                    radius: 18
                    color: "transparent"
                    border { width: 3; color: Theme.secondary }
                    antialiasing: true

                    Rectangle { x: 16.5; y: 9; width: 3; height: 11; radius: 1.5; color: Theme.secondary; antialiasing: true }
                    Rectangle { x: 16.25; y: 23; width: 3.5; height: 3.5; radius: 1.75; color: Theme.secondary; antialiasing: true }
                }
            }
            WordText {
                width: parent.width
                text: root.headline
                color: Theme.text
                font { pixelSize: Theme.scaled(20); weight: Font.DemiBold }
                horizontalAlignment: Text.AlignHCenter
                Accessible.ignored: true
            }
            WordText {
                width: parent.width
                visible: text.length > 0
                text: root.explanation
                color: Theme.secondary
                font.pixelSize: Theme.detailSize
                // Whole pixels, so that no line stands between two.
                lineHeightMode: Text.FixedHeight
                lineHeight: Math.round(1.45 * font.pixelSize)
                horizontalAlignment: Text.AlignHCenter
                Accessible.ignored: true
            }
            TextButton {
                id: more

                property bool open: false

                visible: root.lost && root.details.length > 0
                anchors.horizontalCenter: parent.horizontalCenter
                text: open ? qsTr("Hide Details") : qsTr("Details")
                onClicked: open = !open
            }
            WordText {
                width: parent.width
                visible: more.visible && more.open
                text: root.details
                color: Theme.secondary
                font.pixelSize: Theme.footSize
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.StaticText
                Accessible.focusable: false
                Accessible.name: text
            }
            Item {
                width: parent.width
                height: restart.height + 20
                opacity: root.lost ? 1 : 0

                PushButton {
                    id: restart

                    enabled: root.lost
                    anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom }
                    width: Math.min(parent.width, fullWidth)
                    height: Math.max(48, contentItem.implicitHeight + 14)
                    leftPadding: parent.width < fullWidth ? 12 : 0
                    rightPadding: leftPadding
                    text: qsTr("Try Again")

                    // Of one line; what breaks into several would tell another width each time.
                    readonly property real fullWidth: Math.ceil(line.implicitWidth) + 48

                    Text {
                        id: line

                        visible: false
                        text: restart.text
                        font { pixelSize: Theme.bodySize; weight: Font.DemiBold }
                    }

                    onClicked: root.restartTapped()
                    onEnabledChanged: if (enabled) forceActiveFocus(Qt.OtherFocusReason)
                    onActiveFocusChanged: flick.showButton()

                    Accessible.name: text
                    Accessible.description: root.explanation
                    Accessible.onPressAction: clicked()

                    background: Rectangle {
                        radius: 12
                        color: !restart.down ? Theme.accent : Theme.dark ? Qt.lighter(Theme.accent, 1.2) : Qt.darker(Theme.accent, 1.2)
                        antialiasing: true

                        FocusRing {
                            visible: restart.visualFocus
                            anchors { fill: parent; margins: -Theme.ringGap }
                            radius: 16
                        }
                    }
                    contentItem: Text {
                        text: restart.text
                        color: Theme.onColor
                        font { pixelSize: Theme.bodySize; weight: Font.DemiBold }
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                    }
                }
            }
        }
    }
}
