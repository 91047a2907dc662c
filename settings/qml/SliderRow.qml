import QtQuick
import QtQuick.Templates as T
import Lumora

// A slider with its number beside it. Hands on a drag when it ends, and a step by key or a typed number at once. Tells of
// the numbers on the way.
Cell {
    id: root

    required row
    readonly property Item stop: slider
    readonly property Item grip: knob // what a finger may hold for as long as it likes

    focused: slider.visualFocus
    implicitHeight: Theme.rowHeightFor(number.implicitHeight)

    T.Slider {
        id: slider

        // The toolkit reads these as the bounds of the control.
        readonly property real minimumValue: from
        readonly property real maximumValue: to
        property bool settling: true // at first too: the bounds are set one after the other, and clamp the value
        property real handedOn: 0
        property real shown: 0 // unlike the value, it may lie beyond the bounds: what is stored does

        anchors { fill: parent; leftMargin: Theme.contentInset(root.icon); rightMargin: number.visible ? number.width + 26 : Theme.inset }
        focusPolicy: Qt.StrongFocus
        from: root.row.minimum
        to: root.row.maximum
        stepSize: root.row.step

        function settle() {
            if (pressed)
                return;
            settling = true;
            value = Math.max(from, Math.min(to, root.row.number));
            handedOn = value;
            shown = root.row.number;
            settling = false;
        }
        function follow() {
            if (settling)
                return;
            shown = value;
            if (pressed)
                root.row.hold(value);
            handOn();
        }
        // Assistive tools set the value themselves and may do so twice.
        function handOn() {
            if (!pressed && !settling && value !== handedOn)
                put(value);
        }
        function put(target) {
            const number = root.row.nearest(target);
            if (number === handedOn && number === shown)
                return;
            settling = true;
            value = number;
            handedOn = number;
            shown = number;
            settling = false;
            root.row.slide(number);
        }
        function step(by, fine) { put(root.row.stepped(value, by, fine)) }

        Component.onCompleted: settle()
        onValueChanged: follow()
        onPressedChanged: {
            handOn();
            if (!pressed)
                root.row.letGo();
        }
        Component.onDestruction: {
            if (pressed)
                root.row?.letGo();
        }

        Connections {
            target: root.row
            function onValueRead() { slider.settle() }
        }

        // Handled here because the slider itself takes a held key for a press.
        Keys.onPressed: event => {
            const fine = event.modifiers & Qt.ShiftModifier;
            const onwards = mirrored ? -1 : 1;
            const steps = new Map([
                [Qt.Key_Left, -onwards], [Qt.Key_Right, onwards], [Qt.Key_PageDown, -4], [Qt.Key_PageUp, 4],
            ]);
            const ends = new Map([[Qt.Key_Home, from], [Qt.Key_End, to]]);
            event.accepted = true;
            if (event.modifiers & Qt.AltModifier)
                event.accepted = false;
            else if (steps.has(event.key))
                step(steps.get(event.key), fine);
            else if (ends.has(event.key))
                put(ends.get(event.key));
            else if (number.visible && [Qt.Key_Return, Qt.Key_Enter].includes(event.key))
                Keyboard.repeats() || number.edit();
            else
                event.accepted = false;
        }

        Accessible.name: root.row.accessibleName
        Accessible.description: root.row.accessibleDescription
        Accessible.onIncreaseAction: step(1, false)
        Accessible.onDecreaseAction: step(-1, false)

        background: Rectangle {
            y: (slider.height - height) / 2
            width: slider.width
            height: 4
            radius: 2
            color: Theme.off
            antialiasing: true

            Rectangle {
                readonly property real middle: knob.x + knob.width / 2

                visible: slider.position > 0 // or it would show beside the round knob
                x: slider.mirrored ? middle : 0
                width: slider.mirrored ? parent.width - middle : middle
                height: parent.height
                radius: 2
                color: Theme.accent
                antialiasing: true
            }
        }
        handle: Knob {
            id: knob

            x: slider.visualPosition * (slider.width - width)
            y: (slider.height - height) / 2
            implicitWidth: 28
            implicitHeight: 28
        }
    }
    SliderNumber {
        id: number

        visible: root.row.showsValue
        anchors { right: parent.right; rightMargin: Theme.inset; top: parent.top; bottom: parent.bottom }
        row: root.row
        number: slider.shown
        onTyped: number => slider.put(number)
        onDone: slider.forceActiveFocus(Qt.TabFocusReason)
    }
}
