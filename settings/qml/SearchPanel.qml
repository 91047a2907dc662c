import QtQuick
import QtQuick.Templates as T
import Lumora

// Looks through all rows: a field at the top, and what has been found beneath it. The field has the focus all the time;
// its keys choose among the results.
FocusScope {
    id: root

    required property SearchModel search
    signal went // to a result
    signal over // the user has gone nowhere

    // Looks for that text, or shows what was found before.
    function begin(text) {
        if (text.length > 0)
            search.query = text;
        head.text = search.query;
        if (text.length === 0)
            head.field.selectAll();
        head.field.forceActiveFocus(Qt.ShortcutFocusReason);
        results.keepCurrent();
    }
    // Shows the results as they were left, for whom comes back from one of them.
    function resume() {
        head.text = search.query;
        head.field.deselect();
        head.field.forceActiveFocus(Qt.ShortcutFocusReason);
        if (search.current >= 0)
            results.positionViewAtIndex(search.current, ListView.Contain);
    }
    function choose(result) {
        if (result < 0)
            return;
        search.choose(result);
        went();
    }
    function step(to) {
        search.current = to;
        results.keepCurrent();
    }
    function takeKey(event) {
        const steps = new Map([
            [Qt.Key_Down, search.current + 1], [Qt.Key_Up, search.current - 1],
            [Qt.Key_PageDown, search.current + 8], [Qt.Key_PageUp, search.current - 8],
            [Qt.Key_Home, 0], [Qt.Key_End, search.count - 1],
        ]);
        event.accepted = true;
        if (steps.has(event.key) && !(event.modifiers & ~Qt.KeypadModifier))
            step(Math.max(0, steps.get(event.key)));
        else if ([Qt.Key_Return, Qt.Key_Enter].includes(event.key))
            choose(search.current);
        else if (event.key === Qt.Key_Escape && head.text.length > 0)
            head.text = search.query = "";
        else if (event.key === Qt.Key_Escape && !Keyboard.repeats()) // which may be the key that has cleared the text
            over();
        else
            event.accepted = false;
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }
    MouseArea { // nothing beneath it is reached
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons & ~Qt.BackButton
        onWheel: wheel => wheel.accepted = true
    }
    Rectangle {
        id: upper

        y: -1 // over the line beneath the bar
        width: parent.width
        height: head.height + 17
        color: Theme.bar

        SearchField {
            id: head

            readonly property real aside: Math.max(Theme.inset, (parent.width - Theme.contentWidth) / 2 + Theme.inset)

            anchors { left: parent.left; leftMargin: aside; right: cancel.left; rightMargin: 6; verticalCenter: parent.verticalCenter; verticalCenterOffset: -2 }
            hint: qsTr("Search")
            note: {
                if (root.search.query.trim().length === 0 || root.search.total === 0)
                    return "";
                return qsTr("%1 of %2").arg(root.search.count + (root.search.more ? "+" : "")).arg(root.search.total);
            }
            onEdited: {
                root.search.query = text;
                results.positionViewAtBeginning();
            }

            Keys.priority: Keys.BeforeItem
            field.Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape || event.text === "/"
            field.Keys.onPressed: event => root.takeKey(event)
            field.Accessible.name: qsTr("Search")
            said: root.search.announcement
        }
        TextButton {
            id: cancel

            anchors { right: parent.right; rightMargin: head.aside - Theme.buttonPadding; verticalCenter: head.verticalCenter }
            text: qsTr("Cancel")
            onClicked: root.over()
        }
        Hairline { anchors.bottom: parent.bottom }
    }
    ListView {
        id: results

        anchors { top: upper.bottom; bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        width: parent.width
        model: root.search
        clip: true
        pixelAligned: true
        boundsBehavior: Flickable.DragAndOvershootBounds
        flickDeceleration: Theme.flickDeceleration
        maximumFlickVelocity: Theme.fastestFlick
        currentIndex: -1
        highlightFollowsCurrentItem: false
        cacheBuffer: 0
        keyNavigationEnabled: false
        activeFocusOnTab: false
        visible: root.search.count > 0
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Results")

        function keepCurrent() {
            if (root.search.current >= 0)
                positionViewAtIndex(root.search.current, ListView.Contain);
            if (root.search.current === 0)
                positionViewAtBeginning();
        }

        T.ScrollIndicator.vertical: PageScrollIndicator {}
        header: Item {
            width: results.width
            height: heading.visible ? heading.height + 18 : 12

            GroupHeader {
                id: heading

                visible: root.search.similar
                x: (parent.width - width) / 2
                y: 18
                width: Theme.columnWidthIn(parent.width)
                text: qsTr("Similar")
                color: Theme.text
                font { pixelSize: Theme.bodySize; weight: Font.DemiBold }
            }
        }
        footer: Item { height: Theme.endGap; width: 1 }
        delegate: SearchResult {
            x: (results.width - width) / 2
            width: Theme.columnWidthIn(results.width)
            current: index === root.search.current
            onTapped: root.choose(index)
        }
    }
    // What there is to say in place of results.
    Column {
        visible: root.search.count === 0
        x: (parent.width - width) / 2
        y: upper.height + Math.max(24, (parent.height - upper.height) / 4)
        width: Theme.columnWidthIn(parent.width) - 2 * Theme.inset
        spacing: 14

        Spinner {
            visible: root.search.total === 0
            anchors.horizontalCenter: parent.horizontalCenter
        }
        MagnifierSign {
            visible: root.search.total > 0
            anchors.horizontalCenter: parent.horizontalCenter
            scaling: 2.5
            color: Theme.tertiary
        }
        WordText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            color: Theme.text
            font.weight: Font.DemiBold
            text: root.search.total === 0 ? qsTr("Looking through the pages…")
                : root.search.query.trim().length === 0 ? qsTr("Find any setting") : qsTr("Nothing like “%1” here").arg(root.search.query.trim())
            Accessible.role: Accessible.StaticText
            Accessible.focusable: false
            Accessible.name: text
        }
        WordText {
            visible: root.search.total > 0
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            color: Theme.secondary
            font.pixelSize: Theme.detailSize
            text: root.search.query.trim().length === 0 ? qsTr("Type a word of it: a title, an option, a page, an application or a font.")
                                                        : qsTr("Fewer or other words may lead there.")
            Accessible.role: Accessible.StaticText
            Accessible.focusable: false
            Accessible.name: text
        }
    }
    Text {
        id: keys

        readonly property real end: results.visible ? results.y + results.contentHeight : 0

        visible: root.search.count > 0 && end + height < parent.height
        anchors { bottom: parent.bottom; bottomMargin: 28; horizontalCenter: parent.horizontalCenter }
        width: Math.min(implicitWidth, parent.width - 2 * Theme.inset)
        height: Math.ceil(implicitHeight)
        topPadding: Theme.groupGap
        text: qsTr("↑ ↓ to choose, Enter to go there, Esc to leave")
        color: Theme.secondary
        font.pixelSize: Theme.footSize
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }
    // Screen readers tell of it when its name changes.
    Item {
        Accessible.role: Accessible.AlertMessage
        Accessible.name: root.search.query.trim().length === 0 ? ""
            : root.search.count === 0 ? qsTr("No results") : qsTr("%1 results").arg(root.search.count)
        width: 1
        height: 1
    }
}
