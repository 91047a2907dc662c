import QtQuick
import Lumora

// The line between the list and the page, which can be dragged and moved by keys.
Item {
    id: root

    required property Panes panes
    property real position: 0 // as the width of the list
    // The toolkit reads these as what assistive tools are told of the control.
    readonly property real minimumValue: panes.narrowest
    readonly property real maximumValue: panes.widest
    readonly property real stepSize: 10
    property real value: position
    readonly property bool hot: area.containsMouse || area.pressed || activeFocus

    width: 9
    activeFocusOnTab: true
    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Width of the list")
    Accessible.focusable: true
    Accessible.onIncreaseAction: put(position + stepSize)
    Accessible.onDecreaseAction: put(position - stepSize)

    // An assistive tool sets the value itself.
    onValueChanged: if (value !== position) put(value)
    onPositionChanged: value = position
    function put(width) {
        panes.divider = Math.max(minimumValue, Math.min(maximumValue, Math.round(width)));
        value = position;
    }

    Keys.onPressed: event => {
        const on = Theme.mirrored ? -stepSize : stepSize;
        const targets = new Map([
            [Qt.Key_Right, position + on], [Qt.Key_Left, position - on],
            [Qt.Key_Home, minimumValue], [Qt.Key_End, maximumValue],
        ]);
        event.accepted = targets.has(event.key) && !(event.modifiers & ~Qt.KeypadModifier);
        if (event.accepted)
            put(targets.get(event.key));
    }

    // A finger needs more room, and finds it on the side of the list: on the other one it goes back.
    Item {
        x: Theme.mirrored ? 0 : root.width - width
        width: Theme.touchSize
        height: parent.height

        DragHandler {
            property real from

            acceptedDevices: PointerDevice.TouchScreen
            target: null
            yAxis.enabled: false
            onActiveChanged: if (active) from = root.position
            onTranslationChanged: if (active) root.put(from + (Theme.mirrored ? -1 : 1) * activeTranslation.x)
        }
    }
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: root.hot ? 3 : 1 / Screen.devicePixelRatio
        height: parent.height
        color: root.hot ? Theme.accent : Theme.hairline
    }
    MouseArea {
        id: area

        property real grip: 0

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        cursorShape: Qt.SplitHCursor
        onPressed: mouse => grip = mapToItem(null, mouse.x, 0).x
        onPositionChanged: mouse => {
            if (!pressed)
                return;
            const now = mapToItem(null, mouse.x, 0).x;
            const by = Theme.mirrored ? grip - now : now - grip;
            const target = Math.max(root.minimumValue, Math.min(root.maximumValue, root.position + by));
            grip += Theme.mirrored ? root.position - target : target - root.position;
            root.put(target);
        }
        onDoubleClicked: root.panes.divider = 0
    }
}
