import QtQuick
import Lumora

// A page of rows: a column of groups that scrolls and keeps what has the focus in view. Up and Down lead from control
// to control, and scroll where the next one is far; keys that a control has no use for scroll.
FocusScope {
    id: root

    required property PageModel page

    readonly property Item focusItem: Window.activeFocusItem
    property bool opened: false // the page has had the focus
    readonly property bool menuOpen: (menu.item as RowMenu)?.open ?? false
    property var landedOn: null // the row that has been shown, until the focus goes elsewhere
    signal typed(string text)
    signal pulled

    focus: true
    onFocusItemChanged: {
        keepInView(focusItem);
        if (landedOn && rowWithFocus() !== landedOn)
            remark(null, "");
    }
    onActiveFocusChanged: {
        if (activeFocus && Keyboard.inUse)
            showFocus();
        opened = opened || activeFocus;
    }

    Keys.onPressed: event => {
        const steps = new Map([[Qt.Key_Up, -1], [Qt.Key_Down, 1]]);
        if (rowWithFocus() instanceof OptionRow)
            steps.set(Qt.Key_Left, -1).set(Qt.Key_Right, 1);
        event.accepted = steps.has(event.key) && !(event.modifiers & ~Qt.KeypadModifier);
        if (event.accepted)
            step(steps.get(event.key));
        else if (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier))
            event.accepted = openMenu(rowWithFocus(), null);
        else
            scroller.keys.take(event);
        if (!event.accepted && isLetter(event) && !rows().some(row => row instanceof FieldRow)) {
            event.accepted = true;
            typed(event.text);
        }
    }

    function isLetter(event) {
        return !(event.modifiers & ~(Qt.ShiftModifier | Qt.KeypadModifier)) && event.text > " " && event.text !== "\x7f";
    }
    // Of a row, by a hand at a place on the page or, when that is null, by key.
    function openMenu(row, hand) {
        if (!row)
            return false;
        menu.active = true;
        (menu.item as RowMenu).show(row.row, Qt.rect(groups.x, topOf(row) - scroller.contentY, row.width, row.height), hand);
        return menuOpen;
    }
    function openMenuAt(place) {
        const row = allRows().find(row => row.contains(row.mapFromItem(root, place)));
        openMenu(row, place);
    }
    // What a finger holds on to keeps it.
    function isHeldAt(place) { return allRows().some(row => row.grip?.contains(row.grip.mapFromItem(root, place))) }
    function putBack() { (menu.item as RowMenu)?.close() }

    // Shows a row in the middle, and where it is. Assistive tools are told the words before its description, until the focus
    // goes elsewhere.
    function land(position, words) {
        for (let i = 0; i < groupItems.count; ++i)
            groupItems.itemAt(i).forceLayout();
        groups.forceLayout();
        const row = allRows().find(item => item.row.position === position);
        if (!row)
            return;
        remark(row, words);
        row.stop?.forceActiveFocus(Qt.TabFocusReason);
        scroller.scrollTo(topOf(row) - (height - row.height) / 2);
        mark.show(Qt.rect(groups.x, topOf(row), row.width, row.height), row.stop || !words ? "" : words + ": " + row.row.accessibleName);
    }
    function remark(row, words) {
        if (landedOn)
            landedOn.row.remark = "";
        landedOn = row;
        if (row)
            row.row.remark = words;
    }

    function allRows() {
        const all = [];
        for (let i = 0; i < groupItems.count; ++i)
            all.push(...groupItems.itemAt(i).rowItems());
        return all;
    }
    // The rows that can have the focus.
    function rows() { return allRows().filter(row => row.stop) }
    function rowWithFocus() {
        const all = rows();
        for (let item = focusItem; item && item !== groups; item = item.parent)
            if (all.includes(item))
                return item;
        return null;
    }
    // Rings what has the focus, which is the first control at first: of options, the chosen one.
    function showFocus() {
        const all = rows();
        const focused = rowWithFocus();
        if (focused)
            focused.stop.focusReason = Qt.TabFocusReason;
        else if (!opened)
            (all.find(row => row.row.marked) ?? all[0])?.stop.forceActiveFocus(Qt.TabFocusReason);
    }
    function step(by) {
        const all = rows();
        const now = rowWithFocus();
        const end = rows => rows[by > 0 ? 0 : rows.length - 1]; // where one begins
        let next = end(all.filter(row => isSeen(row)));
        if (now && isInView(now))
            next = all[all.indexOf(now) + by] ?? (now instanceof OptionRow ? end(all) : null); // options are a ring
        if (next && isNear(next, by))
            next.stop.forceActiveFocus(by > 0 ? Qt.TabFocusReason : Qt.BacktabFocusReason);
        else
            scroller.scrollTo(scroller.contentY + by * scroller.line);
    }

    function topOf(item) { return item.mapToItem(groups, 0, 0).y + groups.y }
    function isInView(row) { return topOf(row) < scroller.contentY + height && topOf(row) + row.height > scroller.contentY }
    // All of it is in view, or as much as there is room for.
    function isSeen(row) {
        const top = Math.max(topOf(row), scroller.contentY);
        const bottom = Math.min(topOf(row) + row.height, scroller.contentY + height);
        return bottom - top >= Math.min(row.height, height) - 1;
    }
    // Nothing before it is skipped when it is scrolled into view.
    function isNear(row, by) {
        const part = Math.min(row.height, height - scroller.line);
        return by > 0 ? topOf(row) + part <= scroller.contentY + height + scroller.line
                      : topOf(row) + row.height - part >= scroller.contentY - scroller.line;
    }

    function keepInView(item) {
        for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
            if (ancestor !== groups)
                continue;
            const top = topOf(item);
            const spare = Math.max(0, height - item.height); // for a part of what is around it
            const above = Math.min(44, spare);
            const bottom = top + item.height + Math.min(Theme.groupGap, spare);
            if (top - above < scroller.contentY)
                scroller.scrollTo(top - above);
            else if (bottom > scroller.contentY + height)
                scroller.scrollTo(bottom - height);
            return;
        }
    }

    // What stands at the top comes back there after every change of size, however often there was no room for it.
    property var place: null // the group and the row at the top, and how far that is above it; null for the beginning
    property size placedIn: Qt.size(0, 0)

    function notePlace() {
        if (width !== placedIn.width || height !== placedIn.height)
            return;
        place = null;
        for (let i = 0; i < groupItems.count && scroller.contentY > 0; ++i) {
            const row = groupItems.itemAt(i).rowItems().findIndex(row => topOf(row) + row.height > scroller.contentY);
            if (row < 0)
                continue;
            place = { group: i, row, above: scroller.contentY - topOf(groupItems.itemAt(i).rowItems()[row]) };
            return;
        }
    }
    function keepPlace() {
        for (let i = 0; i < groupItems.count; ++i)
            groupItems.itemAt(i).forceLayout();
        groups.forceLayout();
        const row = place && groupItems.itemAt(place.group)?.rowItems()[place.row];
        if (row)
            scroller.scrollTo(topOf(row) + place.above);
        keepInView(focusItem);
        placedIn = Qt.size(width, height);
    }
    Timer {
        id: resized

        interval: 0
        onTriggered: root.keepPlace()
    }
    onWidthChanged: resized.restart()
    onHeightChanged: resized.restart()
    onEnabledChanged: if (!enabled) putBack()

    Scroller {
        id: scroller

        // Unlike an anchor, this holds before the rows are complete.
        width: root.width
        height: root.height
        contentHeight: groups.y + groups.height + Theme.endGap
        enabled: !root.menuOpen
        onHeightChanged: root.keepInView(root.focusItem)
        onContentYChanged: root.notePlace()

        LandingMark {
            id: mark

            z: 1
        }
        Column {
            id: groups

            x: (scroller.width - width) / 2
            y: 20
            width: Theme.columnWidthIn(scroller.width)
            spacing: Theme.groupGap

            Repeater {
                id: groupItems

                model: root.page.groups

                Group {
                    required property GroupModel modelData

                    width: groups.width
                    group: modelData
                }
            }
        }
    }
    // Over the rows, so that it hears of a press before a row takes it.
    Item {
        anchors.fill: parent

        TapHandler {
            acceptedButtons: Qt.RightButton
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad | PointerDevice.Stylus
            onPressedChanged: {
                if (pressed && !root.menuOpen)
                    root.openMenuAt(point.position);
            }
        }
        PointHandler {
            id: finger

            acceptedDevices: PointerDevice.TouchScreen
            onActiveChanged: active && !scroller.moving ? held.restart() : held.stop()
            onPointChanged: {
                const way = Qt.vector2d(point.position.x - point.pressPosition.x, point.position.y - point.pressPosition.y);
                if (way.length() > Application.styleHints.startDragDistance)
                    held.stop();
            }
        }
    }
    Timer {
        id: held

        interval: Theme.holdTime
        onTriggered: {
            const edge = Theme.mirrored ? root.width - finger.point.position.x : finger.point.position.x;
            if (edge >= 20 && !root.isHeldAt(finger.point.position)) // from the edge, the page may be swiped back
                root.openMenuAt(finger.point.position);
        }
    }
    // Loaded when it is first needed.
    Loader {
        id: menu

        anchors.fill: parent
        active: false
        sourceComponent: RowMenu {}
    }
    PullDown {
        anchors.fill: parent
        view: scroller
        onPulled: root.pulled()
    }
}
