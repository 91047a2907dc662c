import QtQuick

// The lock screen: at the end of the window where that is wide enough, or else in a window of its own, if one is asked for.
FocusScope {
    id: root

    required property var lockScreen // null for none
    property real headHeight: 0
    property bool pageShown: false
    property bool awaited: true // the pages come first
    property bool hidden: false // by the user
    property var own: null // the other window, while it is open
    property bool elsewhere: false // a small one is shown on a sheet
    readonly property real room: lockScreen?.widthIn(Window.width, Window.height) ?? 0
    readonly property bool windowShows: Window.visibility !== Window.Hidden && Window.visibility !== Window.Minimized
    readonly property bool ownShows: own !== null && own.visibility !== Window.Hidden && own.visibility !== Window.Minimized

    width: hidden ? 0 : room
    visible: width > 0
    onRoomChanged: {
        if (room === 0)
            hidden = false;
        else
            closeOwn();
    }

    function toggle() {
        if (room > 0)
            hidden = !hidden;
        else if (lockScreen)
            openOwn();
    }
    function takeFocus() { place.item?.forceActiveFocus(Qt.ShortcutFocusReason) }
    function openOwn() {
        if (!own) {
            const component = Qt.createComponent("qrc:/qt/qml/LumoraFace/FaceWindow.qml");
            own = component.createObject(null, { face: lockScreen.face(), width: Math.min(430, Screen.desktopAvailableWidth),
                                                 height: Math.min(924, Screen.desktopAvailableHeight) });
            dress(own);
            own.closing.connect(closeOwn);
        }
        if (own.visibility === Window.Minimized)
            own.showNormal();
        own.raise();
        own.requestActivate();
    }
    function closeOwn() {
        own?.destroy();
        own = null;
    }
    function dress(item) {
        item.dark = Qt.binding(() => Theme.dark);
        item.animated = Qt.binding(() => Theme.animated);
    }

    Connections {
        target: root.Window.window
        enabled: root.awaited && root.pageShown
        function onFrameSwapped() { root.awaited = false }
    }
    Binding {
        target: root.lockScreen
        when: root.lockScreen !== null
        property: "ratio"
        value: root.own?.screen.devicePixelRatio ?? root.Screen.devicePixelRatio
    }
    Binding {
        target: root.lockScreen
        when: root.lockScreen !== null
        property: "shown"
        value: ((root.visible || root.elsewhere) && root.windowShows) || root.ownShows
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.beside
    }
    Loader {
        id: place

        // A phone is no page: it has its left where it is.
        LayoutMirroring.enabled: false
        LayoutMirroring.childrenInherit: true
        width: parent.width
        height: parent.height
        focus: true
        onLoaded: {
            root.dress(item);
            item.ground = Qt.binding(() => Theme.beside);
            item.headHeight = Qt.binding(() => root.headHeight);
        }

        readonly property bool wanted: root.visible && !root.awaited
        onWantedChanged: wanted ? setSource("qrc:/qt/qml/LumoraFace/FacePane.qml", { face: root.lockScreen.face() }) : source = ""
    }
    Rectangle {
        anchors.left: parent.left
        width: 1 / Screen.devicePixelRatio
        height: parent.height
        color: Theme.hairline
    }
    FocusRing {
        anchors { fill: parent; margins: 3 }
        visible: root.activeFocus && Keyboard.inUse
    }
}
