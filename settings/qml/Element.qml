import QtQuick
import Lumora

// Something on a page's view, for the keyboard and assistive tools: a button, or a mark that is moved along one axis or
// two. Only its focus ring is seen. Mouse and fingers go to the view itself.
FocusScope {
    id: root

    required property ElementModel element
    readonly property bool isButton: element.axes.length === 0
    readonly property alias ringed: ring.visible

    x: element.frame.x
    y: element.frame.y
    width: element.frame.width
    height: element.frame.height
    activeFocusOnTab: isButton // or else one of the sliders is the stop

    // Mouse and fingers bring the keyboard focus along. The ring then waits for a key.
    property bool inHand: false
    function takeInHand() {
        inHand = true;
        forceActiveFocus(Qt.MouseFocusReason);
    }
    // When the window loses the focus, the element keeps its state until the focus comes back.
    onActiveFocusChanged: if (!activeFocus && Window.active) inHand = false

    Accessible.role: isButton ? Accessible.Button : Accessible.Grouping
    Accessible.name: element.label
    Accessible.description: Array.from(element.axes, axis => axis.label + " " + Math.round(axis.value * 100) + " %")
        .join(", ")
    Accessible.focusable: isButton

    // Assistive tools are told only of actions that are connected.
    Connections {
        target: root.isButton ? root.Accessible : null
        function onPressAction() { root.element.press() }
    }

    Keys.onPressed: event => {
        if (event.modifiers & (Qt.AltModifier | Qt.ControlModifier | Qt.MetaModifier))
            return;
        if (isButton) {
            event.accepted = [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter].includes(event.key);
            if (!event.accepted)
                return;
            inHand = false;
            if (!Keyboard.repeats())
                element.press();
            return;
        }
        const step = event.modifiers & Qt.ShiftModifier ? 0.1 : 0.01;
        const moves = new Map();
        if (element.movesAcross) {
            moves.set(Qt.Key_Left, [-step, 0]).set(Qt.Key_Right, [step, 0]);
            moves.set(Qt.Key_Home, [-1, 0]).set(Qt.Key_End, [1, 0]);
            moves.set(Qt.Key_PageUp, [-0.1, 0]).set(Qt.Key_PageDown, [0.1, 0]);
        }
        if (element.movesDown) {
            moves.set(Qt.Key_Up, [0, -step]).set(Qt.Key_Down, [0, step]);
            moves.set(Qt.Key_PageUp, [0, -0.1]).set(Qt.Key_PageDown, [0, 0.1]);
            if (!element.movesAcross)
                moves.set(Qt.Key_Home, [0, -1]).set(Qt.Key_End, [0, 1]);
        }
        event.accepted = moves.has(event.key);
        if (!event.accepted)
            return;
        inHand = false;
        const [across, down] = moves.get(event.key);
        const moved = Array.from(element.axes).findIndex(axis => axis.vertical === (down !== 0));
        sliders.itemAt(moved).forceActiveFocus(Qt.OtherFocusReason);
        element.move(across, down);
    }

    // One for each axis. Assistive tools read out what happens where the focus is, so it goes to the one that moves.
    Repeater {
        id: sliders

        model: root.element.axes

        Item {
            id: slider

            required property AxisModel modelData
            required property int index
            readonly property real minimumValue: 0
            readonly property real maximumValue: 1
            readonly property real stepSize: 0.01
            property real value: 0

            anchors.fill: parent
            focus: index === 0
            activeFocusOnTab: focus // the one that was moved last
            Component.onCompleted: value = modelData.value
            // An assistive tool has set the value: asks the view, and takes back what a touch cannot reach.
            onValueChanged: {
                modelData.set(value);
                value = modelData.value;
            }

            Connections {
                target: slider.modelData
                function onValueChanged() { slider.value = slider.modelData.value }
            }

            Accessible.role: Accessible.Slider
            Accessible.name: modelData.label
            Accessible.description: root.element.label
            Accessible.focusable: true
            Accessible.onIncreaseAction: modelData.set(modelData.value + stepSize)
            Accessible.onDecreaseAction: modelData.set(modelData.value - stepSize)
        }
    }
    // A second ring inside the usual one, as the view below may have any colour.
    Rectangle {
        visible: ring.visible
        anchors { fill: parent; margins: 3 }
        color: "transparent"
        border { width: 1; color: Theme.cell }
        antialiasing: true
    }
    FocusRing {
        id: ring

        visible: root.activeFocus && !root.inHand
        anchors { fill: parent; margins: Theme.ringInset }
        radius: 2
    }
}
