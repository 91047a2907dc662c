import QtQuick
import LumoraFace

// What can be done with the preview. Closes by a choice, by Escape and by a click beside it.
FocusScope {
    id: menu
    required property FaceModel face
    property real below: 0 // where its lines begin
    property bool landscape: false
    property color ground: "#ffffff"
    property color text: "#000000"
    signal turned
    signal closed

    function open() {
        visible = true;
        lines.currentIndex = 0;
        lines.forceActiveFocus();
    }
    function close() {
        visible = false;
        closed();
    }
    readonly property var choices: [
        {text: "Follow Changes", checked: face.follows, choose: () => face.follows = !face.follows},
        {text: landscape ? "Upright" : "Landscape", checked: false, choose: () => turned()},
        {text: "Sleep Now", checked: false, choose: () => face.act("key S")}
    ]

    visible: false
    MouseArea {
        anchors.fill: parent
        onClicked: menu.close()
    }
    Rectangle {
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: menu.below
        width: 220
        height: lines.height + 12
        radius: 12
        color: menu.ground
        border.width: 1
        border.color: Qt.alpha(menu.text, 0.2)

        ListView {
            id: lines
            x: 6
            y: 6
            width: parent.width - 12
            height: contentHeight
            interactive: false
            keyNavigationEnabled: true
            focus: true
            model: menu.choices.length
            keyNavigationWraps: true

            // The key that has opened the menu may still be held.
            function enter(event) {
                if (!event.isAutoRepeat) currentItem?.choose();
            }

            Accessible.role: Accessible.PopupMenu
            Accessible.name: "Menu of the preview"
            Keys.onEscapePressed: menu.close()
            Keys.onReturnPressed: event => enter(event)
            Keys.onEnterPressed: event => enter(event)
            Keys.onTabPressed: menu.close()
            Keys.onBacktabPressed: menu.close()
            Keys.onSpacePressed: event => enter(event)

            delegate: Rectangle {
                id: line
                required property int index
                readonly property var choice: menu.choices[index]
                function choose() {
                    const choose = choice.choose;
                    menu.close();
                    choose();
                }

                width: ListView.view?.width ?? 0
                height: 44
                radius: 8
                color: ListView.isCurrentItem ? Qt.alpha(menu.text, 0.1) : "transparent"
                Accessible.role: Accessible.MenuItem
                Accessible.name: choice.text
                Accessible.checkable: index === 0
                Accessible.checked: choice.checked
                Accessible.onPressAction: choose()

                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    x: 10
                    visible: line.choice.checked
                    text: "✓"
                    font.pixelSize: 16
                    color: menu.text
                    Accessible.ignored: true
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    x: 32
                    text: line.choice.text
                    font.pixelSize: 16
                    color: menu.text
                    Accessible.ignored: true
                }
                MouseArea {
                    anchors.fill: parent
                    hoverEnabled: true
                    onEntered: lines.currentIndex = line.index
                    onClicked: line.choose()
                }
            }
        }
    }
}
