import QtQuick
import QtQuick.Templates as T

// A slider with its number beside it. Hands on a drag when it ends, and a step by key at once.
Cell {
    id: root

    required row

    focused: slider.visualFocus
    implicitHeight: Theme.rowHeightFor(number.implicitHeight)

    T.Slider {
        id: slider

        readonly property real step: (to - from) / 20
        // The toolkit reads these as the bounds of the control.
        readonly property real minimumValue: from
        readonly property real maximumValue: to
        property bool settling: true // at first too: the bounds are set one after the other, and clamp the value
        property real handedOn: 0

        anchors { fill: parent; leftMargin: Theme.contentInset(root.icon); rightMargin: number.visible ? number.width + 26 : Theme.inset }
        focusPolicy: Qt.StrongFocus
        from: root.row.minimum
        to: root.row.maximum

        function settle() {
            if (pressed)
                return;
            settling = true;
            value = root.row.number;
            handedOn = value;
            settling = false;
        }
        // Assistive tools set the value themselves and may do so twice.
        function handOn() {
            if (pressed || settling || value === handedOn)
                return;
            handedOn = value;
            root.row.slide(value);
        }
        function move(target) { value = Math.max(from, Math.min(to, target)) }

        Component.onCompleted: settle()
        onValueChanged: handOn()
        onPressedChanged: handOn()

        Connections {
            target: root.row
            function onValueRead() { slider.settle() }
        }

        // Handled here because the slider itself takes a held key for a press.
        Keys.onPressed: event => {
            const targets = new Map([
                [Qt.Key_Left, value - step], [Qt.Key_Down, value - step],
                [Qt.Key_Right, value + step], [Qt.Key_Up, value + step],
                [Qt.Key_PageDown, value - 4 * step], [Qt.Key_PageUp, value + 4 * step],
                [Qt.Key_Home, from], [Qt.Key_End, to],
            ]);
            if (event.modifiers & Qt.AltModifier || !targets.has(event.key))
                return;
            move(targets.get(event.key));
            event.accepted = true;
        }

        Accessible.name: root.row.accessibleName
        Accessible.description: root.row.accessibleDescription
        Accessible.onIncreaseAction: move(value + step)
        Accessible.onDecreaseAction: move(value - step)

        background: Rectangle {
            y: (slider.height - height) / 2
            width: slider.width
            height: 4
            radius: 2
            color: Theme.off
            antialiasing: true

            Rectangle {
                width: knob.x + knob.width / 2
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
    Text {
        id: number

        visible: root.row.showsValue
        anchors { right: parent.right; rightMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        width: Math.max(Theme.scaled(36), widest.advanceWidth)
        text: root.row.shown(slider.value)
        color: Theme.secondary
        font.pixelSize: Theme.detailSize
        horizontalAlignment: Text.AlignRight
        Accessible.ignored: true
    }
    TextMetrics {
        id: widest

        readonly property string least: root.row.shown(root.row.minimum)
        readonly property string most: root.row.shown(root.row.maximum)
        readonly property string longest: least.length > most.length ? least : most

        font: number.font
        // Zero is the widest digit. At the usual size, the room beside the number is enough for the difference.
        text: Theme.textSize > 100 ? longest.replace(/[0-9]/g, "0") : longest
    }
}
