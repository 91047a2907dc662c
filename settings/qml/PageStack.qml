import QtQuick
import Lumora

// The open pages, of which the last is on top. One column shows that one. Of two, the list at the beginning shows the
// page before it, and the other column the page on top; a page that is alone stands in the list, and so does one to
// which the user has turned there.
FocusScope {
    id: root

    property real listWidth: 0 // of the first of two columns; 0 for one
    property real viewWidth: width // of a view that a page in the second column hosts
    property bool listEnabled: true
    property bool takesFocus: true // is not covered by what has it
    property bool swipes: false // a finger from the edge goes back
    property bool turningBack: false // to the page in the list, when the one on top goes next
    property bool turnedBack: false
    property var slots: []
    readonly property int depth: slots.length
    readonly property int last: depth - 1
    readonly property Page shownPage: pageAt(last)
    readonly property bool alone: depth === 1 && shownPage.page.hostsView // with nothing to choose from
    readonly property bool two: listWidth > 0 && !alone
    readonly property bool lastInList: two && (depth <= 1 || (turnedBack && !shownPage.page.hostsView))
    readonly property int listIndex: !two ? -1 : lastInList ? last : last - 1
    readonly property Page listPage: pageAt(listIndex)
    readonly property Page mainPage: lastInList ? null : shownPage // in the only or the second column
    // Where the page on top stands, unless it is in the list.
    readonly property real mainX: two && !Theme.mirrored ? listWidth : 0
    readonly property real mainWidth: two ? width - listWidth : width
    readonly property rect shownArea: lastInList ? Qt.rect(Theme.mirrored ? width - listWidth : 0, 0, listWidth, height)
                                                 : Qt.rect(mainX, 0, mainWidth, height)
    signal gone(PageModel page)
    signal swipedBack // the finger has let go of the page, which is to be popped

    function pageAt(index) { return slots[index]?.shown ?? null }

    function push(page, animated) {
        change(() => {
            turnedBack = false;
            slots = [...slots, slotComponent.createObject(root, { page, index: depth })];
        }, animated);
    }
    function replace(page) {
        change(() => {
            const former = slots[last];
            slots = [...slots.slice(0, -1), slotComponent.createObject(root, { page, index: last })];
            former.destroy();
        }, false);
    }
    function popTo(depth, animated) {
        const left = slots.slice(depth);
        const slides = animated && !turningBack;
        change(() => {
            turnedBack = turningBack;
            turningBack = false;
            left.forEach(slot => slot.gone = true);
            slots = slots.slice(0, depth);
        }, slides);
        left.forEach(slot => slot.leave());
    }

    // What a finger was to take away has stayed.
    function stay() { swipe.stay() }

    // Does it, and has the pages slide from where they were to where they are.
    function change(work, animated) {
        const before = new Map(root.slots.filter(slot => slot.placed).map(slot => [slot, slot.x]));
        const listed = listPage;
        const top = last;
        work();
        const onTheirWay = swipe.leaving && swipe.upper?.gone ? [swipe.upper, swipe.lower] : [];
        if (onTheirWay.length === 0)
            swipe.forget();
        // Beside a list that stays, pages follow each other without a way.
        const slides = animated && !(two && listPage === listed);
        const sign = Theme.mirrored ? -1 : 1;
        for (const slot of new Set([...before.keys(), ...root.slots.filter(slot => slot.placed)])) {
            const was = before.has(slot);
            if (onTheirWay.includes(slot))
                slot.letGo();
            else if (!slides || (was && slot.placed && before.get(slot) === slot.x))
                slot.rest();
            else if (was && slot.placed)
                slot.slide(before.get(slot) - slot.x, 0);
            else if (was)
                slot.slide(0, sign * slot.width * (slot.gone ? 1 : -0.3));
            else
                slot.slide(sign * slot.width * (slot.index > top ? 1 : -0.3), 0);
        }
        swipe.leaving = false;
        swipe.upper = swipe.lower = null;
        if (takesFocus)
            shownPage?.forceActiveFocus(Qt.OtherFocusReason);
        else if (shownPage)
            shownPage.focus = true;
    }

    clip: true
    Accessible.role: Accessible.LayeredPane
    // What had the focus in the list is no longer seen.
    onTwoChanged: {
        if (!two && activeFocus && !shownPage?.activeFocus)
            shownPage?.forceActiveFocus(Qt.OtherFocusReason);
    }

    component Slot: Item {
        id: slot

        required property PageModel page
        required property int index
        property bool gone: false
        property bool carried: false // by a finger, or where one has left it
        readonly property Page shown: content
        readonly property bool isMain: index > root.listIndex
        // Whether it is one of the pages that are seen at rest.
        readonly property bool placed: !gone && (index === root.last || index === root.listIndex)

        x: isMain ? root.mainX : Theme.mirrored ? root.width - width : 0
        width: !root.two ? root.width : isMain ? root.mainWidth : root.listWidth
        height: root.height
        z: index
        visible: placed || carried || way.running
        enabled: !gone && (isMain || root.listEnabled)

        // The first frame shows that it is on its way.
        function slide(from, to) {
            carry(from + 0.1 * (to - from));
            glide(to, 1);
            carried = false;
        }
        function rest() {
            carry(0);
            carried = false;
        }
        function carry(x) {
            way.stop();
            carried = true;
            content.x = x;
        }
        // From where it is, in that part of the usual time.
        function glide(to, part) {
            way.stop(); // so that it is known where it is
            if (!Theme.animated)
                return carry(to);
            way.from = content.x;
            way.to = to;
            way.duration = Math.max(1, part * Theme.slideTime);
            way.start();
        }
        // It is where it belongs, or on its way there.
        function letGo() {
            carried = false;
            if (!way.running)
                content.x = 0;
        }
        function leave() {
            if (!way.running)
                destroy();
        }

        Page {
            id: content

            page: slot.page
            width: slot.width
            height: slot.height
            widestView: root.two && slot.isMain ? root.viewWidth : Infinity
            onGone: page => root.gone(page)

            PageEdge {
                visible: slot.carried || way.running
                x: Theme.mirrored ? parent.width : -width
                height: parent.height
            }
        }
        XAnimator {
            id: way

            target: content
            easing.type: Easing.OutCubic
            onFinished: {
                if (slot.gone)
                    slot.destroy();
                else if (!slot.carried)
                    content.x = 0; // of one that is out of sight, too: it may be seen again without a way
            }
        }
    }
    SwipeBack {
        id: swipe

        x: Theme.mirrored ? root.mainX + root.mainWidth - width : root.mainX
        z: root.depth
        height: root.height
        stack: root
        enabled: root.swipes && !swipe.leaving && root.depth > 1 && root.mainPage !== null
        onBack: root.swipedBack()
    }
    Component {
        id: slotComponent

        Slot {}
    }
    NothingOpen {
        visible: root.two && (!root.mainPage || swipe.upper !== null) && root.depth > 0
        x: root.mainX
        z: -1
        width: root.mainWidth
        height: root.height
    }
}
