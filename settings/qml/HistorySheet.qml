import QtQuick
import QtQuick.Templates as T
import Lumora

// What has been changed, by day, and a slider through it: the lock screen shows how it was then, until that is restored.
FocusScope {
    id: root

    required property var history // a settings::History
    property var lockScreen: null // for a small one, where there is none beside the sheet
    property real gap: 0
    property bool hasKeys: true
    readonly property bool inThePast: history.place < history.count
    signal gone

    function restore() {
        if (!sheet.open || history.differing === 0)
            return;
        history.restore();
        sheet.slideAway();
    }

    Component.onCompleted: {
        sheet.open = true;
        (time.visible ? time : doneButton).forceActiveFocus(Qt.PopupFocusReason);
    }
    KeyOnce {
        sequence: "Escape"
        enabled: sheet.open && root.hasKeys
        onPressed: sheet.slideAway()
    }

    Sheet {
        id: sheet

        anchors.fill: parent
        gap: root.gap
        title: qsTr("History")
        slides: Theme.animated
        onGone: root.gone()

        Item {
            id: head

            width: parent.width
            height: 52

            TextButton {
                id: doneButton

                anchors { left: parent.left; leftMargin: Theme.inset - leftPadding; verticalCenter: parent.verticalCenter }
                text: qsTr("Done")
                onClicked: sheet.slideAway()
            }
            Text {
                anchors.centerIn: parent
                text: sheet.title
                textFormat: Text.PlainText
                color: Theme.text
                font { pixelSize: Theme.barSize; weight: Font.DemiBold }
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            TextButton {
                anchors { right: parent.right; rightMargin: Theme.inset - rightPadding; verticalCenter: parent.verticalCenter }
                text: root.history.differing > 0 ? qsTr("Restore %1").arg(root.history.differing) : qsTr("Restore")
                strong: true
                enabled: root.history.differing > 0
                Accessible.description: enabled ? qsTr("Sets what differs to what it was then") : ""
                onClicked: root.restore()
            }
            Hairline {
                anchors.bottom: parent.bottom
                height: 1
            }
        }
        // A small lock screen, and beside it the time.
        Item {
            id: past

            anchors { top: head.bottom; left: parent.left; right: parent.right }
            height: root.history.count === 0 ? 0 : Math.max(face.height + 2 * Theme.textGap, words.height)
            visible: root.history.count > 0

            Rectangle {
                anchors { fill: face; margins: -3 }
                visible: face.active
                color: "#15161c"
                radius: 14
            }
            Item {
                id: face

                readonly property bool active: root.lockScreen !== null

                x: Theme.mirrored ? parent.width - width - Theme.inset : Theme.inset
                y: Theme.textGap
                width: active ? Math.floor(height * 390 / 844) : 0
                height: active ? Math.round(Math.max(160, Math.min(300, sheet.sheetHeight * 0.3))) : 0
                enabled: false

                // It takes the size of its place only once it has what it shows.
                Loader {
                    readonly property bool wanted: face.active

                    onLoaded: {
                        item.animated = false;
                        item.width = Qt.binding(() => face.width);
                        item.height = Qt.binding(() => face.height);
                    }
                    onWantedChanged: wanted ? setSource("qrc:/qt/qml/LumoraFace/Face.qml", { face: root.lockScreen.face() }) : source = ""
                }
            }
            Column {
                id: words

                readonly property real beside: face.active ? face.width + 2 * Theme.inset : Theme.inset

                x: Theme.mirrored ? Theme.inset : beside
                width: parent.width - beside - Theme.inset
                anchors.verticalCenter: parent.verticalCenter
                topPadding: Theme.lineGap
                bottomPadding: Theme.lineGap
                spacing: 2

                WordText {
                    width: parent.width
                    text: root.inThePast ? root.history.moment : qsTr("Now")
                    font.weight: Font.DemiBold
                    color: Theme.text
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                WordText {
                    width: parent.width
                    text: !root.inThePast ? qsTr("Drag to see how it was")
                        : root.history.differing === 1 ? qsTr("1 setting was another")
                        : root.history.differing > 1 ? qsTr("%1 settings were others").arg(root.history.differing) : qsTr("The settings were these")
                    color: Theme.secondary
                    font.pixelSize: Theme.detailSize
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                T.Slider {
                    id: time

                    // The toolkit reads these as the bounds of the control.
                    readonly property real minimumValue: from
                    readonly property real maximumValue: to

                    width: parent.width
                    height: Theme.touchSize
                    focusPolicy: Qt.StrongFocus
                    from: 0
                    to: Math.max(1, root.history.count)
                    stepSize: 1
                    snapMode: T.Slider.SnapAlways
                    live: true
                    value: root.history.place
                    onValueChanged: root.history.place = Math.round(value)
                    // It has the focus from the start. Whoever uses keys then sees it.
                    Keys.onPressed: event => { focusReason = Qt.TabFocusReason; event.accepted = false; }
                    Accessible.name: qsTr("Time")
                    Accessible.description: root.inThePast ? root.history.moment : qsTr("Now")
                    Accessible.onIncreaseAction: increase()
                    Accessible.onDecreaseAction: decrease()

                    Connections {
                        target: root.history
                        function onMoved() { time.value = root.history.place }
                    }
                    background: Rectangle {
                        y: (time.height - height) / 2
                        width: time.width
                        height: 4
                        radius: 2
                        color: Theme.off
                        antialiasing: true

                        Rectangle {
                            readonly property real middle: time.visualPosition * parent.width

                            x: time.mirrored ? middle : 0
                            width: time.mirrored ? parent.width - middle : middle
                            height: parent.height
                            radius: 2
                            color: Theme.accent
                            antialiasing: true
                        }
                    }
                    handle: Knob {
                        x: time.visualPosition * (time.width - width)
                        y: (time.height - height) / 2
                        implicitWidth: 28
                        implicitHeight: 28

                        FocusRing {
                            anchors { fill: parent; margins: -Theme.ringGap }
                            radius: width / 2
                            visible: time.visualFocus
                        }
                    }
                }
            }
            Hairline { anchors.bottom: parent.bottom }
        }
        ListView {
            id: list

            anchors { top: past.bottom; left: parent.left; right: parent.right; bottom: parent.bottom }
            model: root.history
            clip: true
            pixelAligned: true
            boundsBehavior: Flickable.DragAndOvershootBounds
            flickDeceleration: Theme.flickDeceleration
            maximumFlickVelocity: Theme.fastestFlick
            currentIndex: -1
            keyNavigationEnabled: false
            activeFocusOnTab: false
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Changes")

            T.ScrollIndicator.vertical: PageScrollIndicator {}
            section { property: "day"; delegate: day }
            footer: Item { height: Theme.endGap; width: 1 }
            delegate: HistoryLine {
                width: list.width
                onUndone: root.history.undo(index)
                onFocused: list.positionViewAtIndex(index, ListView.Contain)
            }
        }
        Component {
            id: day

            GroupHeader {
                required property string section

                width: list.width
                topPadding: Theme.groupGap
                text: section
            }
        }
        WordText {
            visible: root.history.count === 0
            anchors { left: parent.left; right: parent.right; margins: Theme.inset; verticalCenter: parent.verticalCenter }
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("No change is known yet")
            color: Theme.secondary
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
