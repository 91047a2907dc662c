import QtQuick
import Lumora

// Where the window has its search: over the pages while it is open, and else as a sign at the end of the bar. Opened by
// keys everywhere, by letters and a pull on a page that offers it, and by the sign. The page to which a result has led
// leads back to the results.
FocusScope {
    id: root

    property SearchModel search: null // null for none
    property Page page: null          // the one on top
    property Page listPage: null      // the one in the list beside it, null for none
    property string title // of all that it looks through
    property bool atRoot: false
    property bool allowed: true
    property bool slashIsALetter: false // of what has the focus
    property bool open: false
    property bool going: false        // to a result
    property bool interrupted: false  // by what does not allow it; it is open again afterwards
    property bool hadFocus: false     // before that
    property PageModel landedOn: null // the page to which the last result has led, until the search is open again
    property real barHeight: 0
    property real barEnd: 0 // of the bar, what something else takes
    readonly property bool canOpen: search !== null && allowed && page !== null
    readonly property bool returns: canOpen && !open && landedOn !== null && page.page === landedOn // going back leads to the results
    readonly property bool signShown: search !== null && atRoot && !open
    readonly property real trailing: search !== null && atRoot ? 4 + sign.width + 4 + barEnd : 0 // of the bar, what the sign takes
    signal opened
    signal over // the user has gone nowhere

    // Looks for a text, or shows the former results when that is empty.
    function begin(text) {
        if (!canOpen)
            return;
        show();
        (panel.item as SearchPanel).begin(text);
    }
    // Shows the results again, and leaves all pages as they are.
    function goBack() {
        show();
        takeFocus();
    }
    function takeFocus() { (panel.item as SearchPanel).resume() }
    function noteLanding(page) {
        if (going)
            landedOn = page;
        going = false;
    }
    function show() {
        if (!open) {
            opened();
            search.open();
        }
        landedOn = null;
        interrupted = false;
        open = true;
    }
    function leave() {
        open = interrupted = false;
        over();
    }

    onAllowedChanged: {
        if (!allowed && open) {
            hadFocus = activeFocus;
            leave();
            interrupted = true;
        } else if (allowed && interrupted && page !== null) {
            show();
            if (hadFocus)
                takeFocus();
        }
    }

    Shortcut {
        sequences: [StandardKey.Find]
        enabled: root.canOpen
        onActivated: root.begin("")
    }
    Shortcut {
        sequence: "/"
        enabled: root.canOpen && !root.open && !root.slashIsALetter
        onActivated: root.begin("")
    }
    component Offer: Connections {
        enabled: root.canOpen

        function onTyped(text) { root.begin(text) }
        function onPulled() {
            if (root.atRoot)
                root.begin("");
        }
    }
    Offer { target: root.page }
    Offer { target: root.listPage === root.page ? null : root.listPage }
    PushButton {
        id: sign

        visible: root.signShown
        enabled: root.canOpen
        anchors { right: parent.right; rightMargin: 4 + root.barEnd; top: parent.top; topMargin: Math.round((root.barHeight - height) / 2) }
        implicitWidth: Theme.buttonHeight
        implicitHeight: Theme.buttonHeight
        opacity: down ? Theme.downOpacity : 1
        text: qsTr("Search")
        onClicked: root.begin("")

        Accessible.name: text
        Accessible.description: qsTr("Ctrl+F")
        Accessible.ignored: !visible || !enabled
        Accessible.onPressAction: clicked()

        background: FocusRing { visible: sign.visualFocus }
        contentItem: Item {
            MagnifierSign {
                anchors.centerIn: parent
                color: Theme.accent
                scaling: 1.15
            }
        }
    }
    Loader {
        id: panel

        property bool needed: false

        anchors { fill: parent; topMargin: root.barHeight }
        active: root.open || needed
        visible: root.open
        enabled: root.open
        focus: true
        onLoaded: needed = true
        sourceComponent: SearchPanel {
            search: root.search
            focus: true
            onOver: root.leave()
            onWent: {
                root.open = false;
                root.going = true;
            }
        }
    }
}
