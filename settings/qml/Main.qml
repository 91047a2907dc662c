import QtQuick
import Lumora

Window {
    id: window

    required property Shell shell
    property SearchModel search: null // null for pictures without it
    property string searchFor // what to look for at first, empty for nothing
    property var lockScreen: null // a settings::LockScreen; null for pictures without it
    property Panes panes: null // null for one column
    property var profiles: null // a settings::Profiles; null for pictures without it
    property string profile // to open at first, empty for none
    property var history: null // a settings::History; null for pictures without it
    property bool historyFirst: false // is opened at first
    property bool marksChanges: false // has a dot at each changed row
    // Where the page on top stands, in the window.
    readonly property rect pageArea: Qt.rect(stack.x + stack.shownArea.x, stack.y, stack.shownArea.width, stack.height)
    // Covered at the end of the window by a keyboard on the screen, where the display makes the window no lower for it.
    readonly property rect keyboard: InputMethod.visible ? InputMethod.keyboardRectangle : Qt.rect(0, 0, 0, 0)
    readonly property real coveredHeight: keyboard.bottom < height ? 0 : Math.min(height - keyboard.top, height - stack.y)
    // Of a view that a page hosts.
    readonly property size viewSize: Qt.size(stack.viewWidth, stack.height)

    visible: true
    minimumWidth: 320
    minimumHeight: 320
    color: Theme.page
    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true
    title: shell.waiting || !stack.shownPage ? shell.waitingTitle : stack.shownPage.page.title

    onClosing: {
        handOnFields();
        (sheet.item as Composer)?.leave();
        shell.leave();
    }

    // The message that is composed over the page, which takes no input meanwhile.
    readonly property ComposerModel composing: stack.shownPage?.page.composer ?? null
    property bool offering: false // to choose from differences
    property var forChosen: () => {} // what is done with the chosen ones
    property var afterOffer: () => {}
    property bool reviewing: false // what has been
    readonly property bool covered: composing !== null || offering // by a sheet, which takes all input
    readonly property bool searching: searchPlace.open
    onCoveredChanged: {
        if (covered) // what was said is about what is beneath the sheet
            passing.hide();
    }
    onComposingChanged: {
        if (composing) {
            sheet.source = "";
            sheet.setSource("Composer.qml", { composer: composing, gap: shell.barHeight,
                                              animated: stack.shownPage.page.presentsAnimated });
        } else if (sheet.item instanceof Composer) {
            sheet.item.animated = stack.shownPage?.page.presentsAnimated ?? true;
            sheet.item.composer = null;
        }
    }

    // A field hands on what was typed when it loses the focus.
    function handOnFields() {
        if (activeFocusItem)
            activeFocusItem.focus = false;
    }
    // What was on a sheet has come to an end.
    function dropSheet() {
        if (offering)
            afterOffer.call();
        offering = reviewing = false;
        sheet.source = "";
        stack.shownPage?.forceActiveFocus(Qt.OtherFocusReason);
    }
    // Before the page on top goes.
    function putDown() {
        handOnFields();
        stack.shownPage?.putBack();
    }
    function goBack() {
        if (searchPlace.open)
            return searchPlace.leave();
        if (shell.waiting || covered)
            return;
        if (searchPlace.returns)
            return searchPlace.goBack();
        if (stack.depth < 2)
            return;
        putDown();
        stack.turningBack = false;
        shell.back();
    }

    function undo() { takeBack(() => shell.undo()) }
    function redo() { takeBack(() => shell.redo()) }
    function takeBack(work) {
        if (covered || shell.waiting)
            return;
        if (searching)
            searchPlace.leave();
        if (activeFocusItem instanceof TextInput) // other controls keep the focus where there is nothing to take back
            handOnFields();
        stack.shownPage?.putBack();
        work();
    }
    // Shows differences to choose from. What is done with them comes first, and then what is done in any case.
    function offer(differences, title, action, accepted, over = () => {}) {
        if (searching)
            searchPlace.leave();
        putDown();
        offering = true;
        forChosen = accepted;
        afterOffer = over;
        sheet.source = "";
        sheet.setSource("DifferencesSheet.qml", { differences, gap: shell.barHeight, title, action });
    }
    // Shows how the page on top differs from what it was when it was opened.
    function offerRevert() {
        const differences = shell.differences();
        if (differences && !covered)
            offer(differences, qsTr("Revert Page"), qsTr("Revert %1"), () => shell.revert(differences));
    }
    function openHistory() { history.open() }
    function showHistory() {
        if (covered)
            return;
        if (searching)
            searchPlace.leave();
        putDown();
        offering = reviewing = true;
        afterOffer = () => history.close();
        sheet.source = "";
        sheet.setSource("HistorySheet.qml", { history, gap: shell.barHeight });
        sheet.item.lockScreen = Qt.binding(() => lockScreenPlace.elsewhere ? lockScreen : null);
    }
    function openProfile() { (profilePlace.item as ProfilePlace)?.show(false) }
    function saveProfile() { (profilePlace.item as ProfilePlace)?.show(true) }
    function say(words) { passing.say(words) }
    function toggleLockScreen() { lockScreenPlace.toggle() }

    function focusPage(reason) {
        if (sheet.item)
            sheet.forceActiveFocus(reason);
        else if (searching)
            searchPlace.takeFocus();
        else
            stack.shownPage?.forceActiveFocus(reason);
    }
    function reload() {
        if (shell.waiting)
            return;
        putDown();
        shell.reload();
    }

    Binding { target: Theme; property: "dark"; value: window.shell.dark }
    Binding { target: Theme; property: "moreContrast"; value: window.shell.moreContrast }
    Binding { target: Theme; property: "textSize"; value: window.shell.textSize }
    Binding { target: Theme; property: "animated"; value: window.shell.animated }
    Binding { target: Theme; property: "marksChanges"; value: window.marksChanges }
    Connections {
        target: window.shell

        function onActivated(forPage, profile) {
            window.visibility === Window.Minimized ? window.showNormal() : window.show();
            window.raise();
            window.requestActivate();
            if (forPage && !window.composing) { // which no page comes before
                if (window.offering)
                    window.dropSheet();
                searchPlace.leave();
                window.putDown();
            }
            if (profile.length === 0)
                return;
            if (profilePlace.item)
                profilePlace.item.first = profile;
            else
                window.profile = profile;
        }
        function onAboutToAppearAnew() { stack.shownPage?.putBack() }
        function onAboutToTurnBack() {
            stack.shownPage?.putBack();
            stack.turningBack = true;
        }
        function onOpenRowTapped() { stack.mainPage?.forceActiveFocus(Qt.OtherFocusReason) }
        function onPagePushed(page, alone) { stack.push(page, Theme.animated && alone) }
        function onPageReplaced(page) {
            const isLanded = searchPlace.landedOn !== null && stack.shownPage?.page === searchPlace.landedOn;
            stack.replace(page);
            if (isLanded)
                searchPlace.landedOn = page;
        }
        function onWentBack() { stack.stay() }
        function onPagesPopped(depth, alone) { stack.popTo(depth, Theme.animated && alone) }
        function onChangedBack(page, row) {
            if (row >= 0)
                stack.shownPage?.land(row, qsTr("Changed"));
            else
                window.focusPage(Qt.OtherFocusReason);
        }
        function onChanged() {
            if (passing.action.length > 0) // its button would take back another change than it tells of
                passing.hide();
        }
        function onSaid(words, offersUndo) { passing.say(words, offersUndo ? qsTr("Undo") : "") }
        function onLanded(page, row, gone) {
            searchPlace.noteLanding(page);
            stack.shownPage?.forceActiveFocus(Qt.OtherFocusReason); // a row that is only read takes none
            stack.shownPage?.land(row, qsTr("Found by the search"));
            if (gone)
                passing.say(qsTr("This row has gone"));
        }
    }
    Connections {
        target: window.history
        function onOpened() { window.showHistory() }
    }
    Binding { target: window.shell; property: "sideBySide"; value: stack.two }
    WindowKeys {
        window: window
        onLockScreen: lockScreenPlace.activeFocus
        onSearch: searchPlace.activeFocus
    }
    PaneKeys {
        panes: window.covered ? [null, sheet, lockScreen]
             : window.searching ? [searchPlace, stack.two ? stack.mainPage : null, lockScreen]
             : [stack.listPage, stack.mainPage, lockScreen]

        readonly property Item lockScreen: lockScreenPlace.visible ? lockScreenPlace : null
    }

    // Width and height change one after the other; the page is told of both at once.
    Timer {
        id: sizeReport

        interval: 0
        onTriggered: {
            if (stack.width > 0 && stack.height > 0) // not before the window has its size
                window.shell.setContentSize(window.viewSize);
        }
    }

    PageStack {
        id: stack

        anchors { fill: parent; topMargin: bar.height + notice.height; rightMargin: lockScreenPlace.width; bottomMargin: window.coveredHeight }
        enabled: !window.shell.waiting && !window.covered && (two || !searchPlace.open)
        listEnabled: !searchPlace.open
        focus: true
        listWidth: window.panes?.listWidthIn(width, window.height, window.panes.columns, window.panes.divider) ?? 0
        viewWidth: two ? window.panes.viewWidthIn(width, listWidth) : width
        takesFocus: !window.covered && !window.searching
        swipes: !window.shell.waiting && !window.covered && !searchPlace.open
        onSwipedBack: {
            if (searchPlace.returns)
                stack.stay();
            window.goBack();
        }
        onGone: page => window.shell.pageGone(page)
        onViewWidthChanged: sizeReport.restart()
        onHeightChanged: sizeReport.restart()
    }
    WaitingScreen {
        x: stack.depth > 0 ? stack.x + stack.mainX : stack.x
        y: stack.y
        width: stack.depth > 0 ? stack.mainWidth : stack.width
        height: stack.height
        visible: window.shell.waiting
        enabled: visible && !window.covered
        headline: window.shell.waitingHeadline
        explanation: window.shell.waitingText
        details: window.shell.waitingDetails
        lost: window.shell.lost
        onRestartTapped: window.shell.restart()
    }
    NavigationBar {
        id: bar

        anchors { left: stack.left }
        width: stack.two ? stack.listWidth : stack.width
        height: window.shell.barHeight
        title: searchPlace.open ? searchPlace.title : stack.two && stack.listPage ? stack.listPage.page.title : window.title
        canGoBack: ((stack.two ? stack.listIndex : stack.last) > 0 || searchPlace.returns) && !window.shell.waiting && !searchPlace.open
        backTo: searchPlace.returns ? qsTr("Results") : ""
        trailing: Math.max(searchPlace.trailing, stack.two ? 0 : columns.trailing)
        enabled: !window.covered
        onBackTapped: window.goBack()
    }
    Columns {
        id: columns

        anchors { left: stack.left; right: stack.right; top: bar.top; bottom: stack.bottom }
        window: window
        panes: window.panes
        stack: stack
        barHeight: bar.height
        title: window.shell.waiting && stack.depth > 0 ? window.shell.waitingTitle : stack.mainPage?.page.title ?? ""
        lockScreen: lockScreenPlace
        enabled: !window.covered
    }
    TweakNotice {
        id: notice

        y: bar.height
        anchors { left: stack.left; right: stack.right }
        gone: window.shell.tweakGone
        changesLost: window.shell.changesLost
        covered: window.shell.waiting
        enabled: !window.covered
        onReloadTapped: window.reload()
    }
    SearchPlace {
        id: searchPlace

        anchors { left: bar.left; right: bar.right; top: parent.top; bottom: stack.bottom }
        barHeight: bar.height
        barEnd: stack.two ? 0 : columns.trailing
        search: window.search
        page: stack.shownPage
        listPage: stack.listPage
        title: stack.pageAt(0)?.page.title ?? ""
        atRoot: (stack.two ? stack.listIndex : stack.last) === 0 && !window.shell.waiting
        allowed: !window.shell.waiting && !window.covered
        slashIsALetter: lockScreenPlace.activeFocus
        onOpened: stack.shownPage?.putBack()
        onOver: window.focusPage(Qt.OtherFocusReason)
    }
    // Not before the page has taken the focus.
    Timer {
        interval: 0
        running: searchPlace.canOpen && window.searchFor.length > 0
        onTriggered: {
            searchPlace.begin(window.searchFor);
            window.searchFor = "";
        }
    }
    Loader {
        id: profilePlace

        readonly property bool wanted: window.profiles !== null && !lockScreenPlace.awaited // which the pages come before

        anchors.fill: parent
        onWantedChanged: {
            if (!wanted)
                return source = "";
            setSource("ProfilePlace.qml", { window, profiles: window.profiles, first: window.profile });
            if (window.historyFirst)
                window.openHistory();
        }
    }
    LockScreenPlace {
        id: lockScreenPlace

        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        lockScreen: window.lockScreen
        headHeight: bar.height
        pageShown: stack.depth > 0 || window.shell.waiting
        elsewhere: window.reviewing && lockScreen !== null && !visible && !own
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

        anchors { fill: parent; rightMargin: lockScreenPlace.width; bottomMargin: window.coveredHeight }
    }
    Binding {
        target: sheet.item
        when: sheet.item !== null
        property: "hasKeys"
        value: !lockScreenPlace.activeFocus // it has a use of its own for them
    }
    PassingNotice {
        id: passing

        anchors { bottom: stack.bottom; bottomMargin: 28; horizontalCenter: stack.horizontalCenter }
        acts: !window.covered
        onActed: window.undo()
        onFocusLost: window.focusPage(Qt.OtherFocusReason)
    }
    Connections {
        target: sheet.item
        ignoreUnknownSignals: true

        function onGone() { window.dropSheet() }
        function onAccepted() { window.forChosen.call() }
    }
}
