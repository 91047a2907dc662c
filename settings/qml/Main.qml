import QtQuick
import QtQuick.Templates as T
import Lumora

Window {
    id: window

    required property Shell shell
    property SearchModel search: null // null for pictures without it
    property string searchFor // what to look for at first, empty for nothing
    property var lockScreen: null // a settings::LockScreen; null for pictures without it
    readonly property real beside: lockScreenPlace.width

    visible: true
    minimumWidth: 320
    minimumHeight: 320
    color: Theme.page
    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true
    title: bar.title

    onClosing: {
        handOnFields();
        sheet.item?.leave();
        shell.leave();
    }

    // The message that is composed over the page, which takes no input meanwhile.
    readonly property ComposerModel composing: stack.shownPage?.page.composer ?? null
    onComposingChanged: {
        if (composing) {
            sheet.source = "";
            sheet.setSource("Composer.qml", { composer: composing, gap: shell.barHeight,
                                              animated: stack.shownPage.page.presentsAnimated });
        } else if (sheet.item) {
            sheet.item.animated = stack.shownPage?.page.presentsAnimated ?? true;
            sheet.item.composer = null;
        }
    }

    // A field hands on what was typed when it loses the focus.
    function handOnFields() {
        if (activeFocusItem)
            activeFocusItem.focus = false;
    }
    // Before the page on top goes.
    function putDown() {
        handOnFields();
        stack.shownPage?.putBack();
    }
    function goBack() {
        if (searchPlace.open)
            return searchPlace.leave();
        if (stack.depth < 2 || shell.waiting || composing)
            return;
        putDown();
        shell.back();
    }

    function focusPage(reason) {
        if (sheet.item)
            sheet.forceActiveFocus(reason);
        else
            stack.currentItem?.forceActiveFocus(reason);
    }
    function reload() {
        putDown();
        shell.reload();
    }

    Binding { target: Theme; property: "dark"; value: window.shell.dark }
    Binding { target: Theme; property: "moreContrast"; value: window.shell.moreContrast }
    Binding { target: Theme; property: "textSize"; value: window.shell.textSize }
    Binding { target: Theme; property: "animated"; value: window.shell.animated }
    Connections {
        target: window.shell

        function onActivated(forPage) {
            window.visibility === Window.Minimized ? window.showNormal() : window.show();
            window.raise();
            window.requestActivate();
            if (forPage)
                window.putDown();
        }
        function onAboutToAppearAnew() { stack.shownPage?.putBack() }
        function onPagePushed(page, alone) {
            const item = stack.push(pageComponent, { page: page },
                                    Theme.animated && alone ? T.StackView.PushTransition : T.StackView.Immediate);
            item.gone.connect(window.shell.pageGone);
        }
        function onPageReplaced(page) {
            const item = stack.replace(stack.currentItem, pageComponent, { page: page }, T.StackView.Immediate);
            item.gone.connect(window.shell.pageGone);
        }
        function onLanded(page, row, gone) {
            stack.shownPage?.land(row);
            if (gone)
                passing.say(qsTr("This row has gone"));
        }
        function onPagesPopped(depth, alone) {
            if (depth === 0)
                stack.clear(T.StackView.Immediate);
            else
                stack.pop(stack.get(depth - 1), Theme.animated && alone ? T.StackView.PopTransition : T.StackView.Immediate);
        }
    }
    Shortcut {
        sequences: [StandardKey.Back]
        enabled: !window.composing
        onActivated: window.goBack()
    }
    Shortcut {
        sequence: "Escape"
        enabled: !window.composing && !searchPlace.open && !lockScreenPlace.activeFocus // the lock screen has a use of its own for it
        onActivated: window.goBack()
    }
    Shortcut {
        sequence: "Ctrl+L"
        enabled: window.lockScreen !== null
        onActivated: lockScreenPlace.toggle()
    }
    Shortcut {
        sequence: "F6"
        enabled: lockScreenPlace.visible
        onActivated: lockScreenPlace.activeFocus ? window.focusPage(Qt.ShortcutFocusReason) : lockScreenPlace.takeFocus()
    }

    Shortcut {
        sequences: [StandardKey.Refresh]
        enabled: !window.composing
        onActivated: window.reload()
    }

    Shortcut {
        sequences: ["Ctrl+W", "Ctrl+Q"] // some desktops have no standard key for the latter
        onActivated: window.close()
    }

    // Width and height change one after the other; the page is told of both at once.
    Timer {
        id: sizeReport

        interval: 0
        onTriggered: {
            if (stack.width > 0 && stack.height > 0) // not before the window has its size
                window.shell.setContentSize(Qt.size(stack.width, stack.height));
        }
    }

    component Slide: Transition {
        id: slide

        property real from: 0
        property real to: 0

        readonly property real way: Theme.mirrored ? -stack.width : stack.width

        XAnimator {
            from: slide.from * slide.way
            to: slide.to * slide.way
            duration: Theme.slideTime
            easing.type: Easing.OutCubic
        }
    }
    Component {
        id: pageComponent

        Page {}
    }
    T.StackView {
        id: stack

        anchors { fill: parent; topMargin: bar.height + notice.height; rightMargin: window.beside }
        enabled: !window.shell.waiting && !window.composing && !searchPlace.open
        clip: true
        focus: true

        pushEnter: Slide { from: 1; to: 0 }
        pushExit: Slide { from: 0; to: -0.3 }
        popEnter: Slide { from: -0.3; to: 0 }
        popExit: Slide { from: 0; to: 1 }

        onCurrentItemChanged: if (currentItem) currentItem.forceActiveFocus(Qt.OtherFocusReason)
        onWidthChanged: sizeReport.restart()
        onHeightChanged: sizeReport.restart()

        readonly property Page shownPage: currentItem as Page
    }
    WaitingScreen {
        anchors.fill: stack
        visible: window.shell.waiting
        enabled: visible && !window.composing
        headline: window.shell.waitingHeadline
        explanation: window.shell.waitingText
        details: window.shell.waitingDetails
        lost: window.shell.lost
        onRestartTapped: window.shell.restart()
    }
    NavigationBar {
        id: bar

        anchors { left: stack.left; right: stack.right }
        height: window.shell.barHeight
        title: searchPlace.open ? searchPlace.title
            : window.shell.waiting || !stack.shownPage ? window.shell.waitingTitle : stack.shownPage.page.title
        canGoBack: stack.depth > 1 && !window.shell.waiting && !searchPlace.open
        trailing: searchPlace.trailing
        enabled: !window.composing
        onBackTapped: window.goBack()
    }
    TweakNotice {
        id: notice

        y: bar.height
        anchors { left: stack.left; right: stack.right }
        gone: window.shell.tweakGone
        changesLost: window.shell.changesLost
        covered: window.shell.waiting
        enabled: !window.composing
        onReloadTapped: window.reload()
    }
    SearchPlace {
        id: searchPlace

        anchors { left: stack.left; right: stack.right; top: parent.top; bottom: parent.bottom }
        barHeight: bar.height
        search: window.search
        page: stack.shownPage
        title: stack.depth > 0 ? (stack.get(0) as Page)?.page.title ?? "" : ""
        atRoot: stack.depth === 1 && !window.shell.waiting
        allowed: !window.shell.waiting && !window.composing
        slashIsALetter: lockScreenPlace.activeFocus
        onOpened: stack.shownPage?.putBack()
        onOver: window.focusPage(Qt.OtherFocusReason)
        onCanOpenChanged: {
            if (canOpen && window.searchFor.length > 0)
                begin(window.searchFor);
            window.searchFor = "";
        }
    }
    PassingNotice {
        id: passing

        anchors { bottom: stack.bottom; bottomMargin: 28; horizontalCenter: stack.horizontalCenter }
    }
    LockScreenPlace {
        id: lockScreenPlace

        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        lockScreen: window.lockScreen
        headHeight: bar.height
        pageShown: stack.depth > 0 || window.shell.waiting
        onVisibleChanged: {
            if (!visible && (activeFocus || !window.activeFocusItem))
                window.focusPage(Qt.OtherFocusReason);
        }
    }
    // The button of a mouse that goes back, wherever it is pressed.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.BackButton
        onPressed: window.goBack()
    }
    // Loaded when it is first needed, so that the window opens some milliseconds earlier.
    Loader {
        id: sheet

        anchors { fill: parent; rightMargin: window.beside }
    }
    Connections {
        target: sheet.item
        ignoreUnknownSignals: true

        function onGone() {
            sheet.source = "";
            stack.currentItem?.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
}
