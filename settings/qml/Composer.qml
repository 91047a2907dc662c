import QtQuick
import Lumora

// A message to complete and send, on a sheet. Only the sheet knows the edited texts: snapshots tell whether the message
// is being sent, and what has become of it.
FocusScope {
    id: root

    // Null once composing has ended; the sheet then slides away and tells when it is gone.
    property ComposerModel composer
    property alias gap: sheet.gap
    property bool hasKeys: true
    property bool animated: true // the sheet slides in and out, where anything moves at all
    signal gone

    property bool handedOver: false // to the page, which has not answered yet
    property bool saving: false
    property bool asking: false // whether to throw away what was edited
    property Item focusBefore: null // what had the focus before that question
    readonly property string draft: composer?.draft ?? "" // of a message that could not be sent
    readonly property string problem: !composer ? "" : draft.length > 0
        ? composer.problem + "\n" + qsTr("The message is kept as a draft, %1.").arg(draft) : composer.problem
    readonly property bool working: handedOver || (composer?.working ?? true)
    readonly property bool sendable: !working && !asking && message.to.trim().length > 0

    function send() {
        if (!sendable)
            return;
        handedOver = true;
        saving = false;
        composer.send(message.to, message.subject, message.body);
    }
    function saveDraft() {
        if (working)
            return;
        asking = false;
        handedOver = true;
        saving = true;
        composer.saveDraft(message.to, message.subject, message.body);
    }
    // One key alone does not throw away what was edited.
    function cancel() {
        if (working)
            return;
        if (!message.edited && draft.length === 0)
            composer.cancel();
        else if (asking)
            goOn();
        else
            ask();
    }
    function ask() {
        focusBefore = Window.activeFocusItem;
        asking = true;
        question.takeFocus();
    }
    function goOn() {
        asking = false;
        (focusBefore ?? message.bodyField).forceActiveFocus(Qt.PopupFocusReason);
    }
    // For closing the window: keeps what the user has written or wanted to send. What is being sent goes on.
    function leave() {
        if (composer && (message.edited || handedOver || composer.working || composer.problem))
            composer.leave(message.to, message.subject, message.body);
    }

    Component.onCompleted: {
        sheet.open = true;
        message.begin(composer);
    }
    onComposerChanged: if (!composer) sheet.slideAway()

    Connections {
        target: root.composer
        function onChanged() { if (!root.composer.working) root.handedOver = false }
    }
    KeyOnce {
        sequence: "Escape"
        enabled: sheet.open && root.hasKeys
        onPressed: root.cancel()
    }
    KeyOnce {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: sheet.open && root.hasKeys
        onPressed: root.send()
    }

    Sheet {
        id: sheet

        anchors.fill: parent
        title: head.title
        slides: root.animated && Theme.animated
        onGone: root.gone()

        ComposerHead {
            id: head

            width: parent.width
            // In a low window, it makes room for the question in large letters.
            visible: !root.asking || full + foot.height + Theme.rowHeight <= sheet.sheetHeight
            enabled: !root.asking
            title: qsTr("New Message")
            working: root.working
            sendable: root.sendable
            again: root.draft.length > 0
            onCancelTapped: root.cancel()
            onSendTapped: root.send()
        }
        ComposerMessage {
            id: message

            anchors { left: parent.left; right: parent.right; top: head.bottom; bottom: foot.top }
            visible: height > 0
            enabled: !root.asking
            readOnly: root.working
            next: saveButton
        }
        Item {
            id: foot

            readonly property real line: Math.max(48, saveButton.height + Theme.lineGap)
            readonly property real room: width + saveButton.leftPadding - saveButton.width - Theme.textGap - 2 * Theme.inset // beside the button
            readonly property bool stacked: status.lineWidth + 1 > room || status.takesLines

            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: root.asking ? question.height + 2 * Theme.lineGap : line + (stacked && status.visible ? status.height + Theme.lineGap : 0)

            Hairline { height: 1 }
            TextButton {
                id: saveButton

                anchors { left: parent.left; leftMargin: Theme.inset - leftPadding; verticalCenter: parent.bottom; verticalCenterOffset: -foot.line / 2 }
                text: qsTr("Save Draft")
                visible: !root.asking
                enabled: !root.working
                onClicked: root.saveDraft()
            }
            // Beside the button if there is room, or else above it.
            ComposerStatus {
                id: status

                x: foot.stacked || Theme.mirrored ? Theme.inset : parent.width - Theme.inset - width
                y: foot.stacked ? Theme.lineGap : Math.round((parent.height - height) / 2)
                width: foot.stacked ? parent.width - 2 * Theme.inset : foot.room
                most: Math.min(0.4 * sheet.sheetHeight, sheet.sheetHeight - head.height - foot.line - Theme.rowHeight) - Theme.lineGap
                atRight: !foot.stacked
                text: !sheet.open || !root.composer || root.asking ? ""
                    : root.working ? (root.saving ? qsTr("Saving…") : qsTr("Sending…")) : root.problem
                warns: !root.working
            }
            ComposerQuestion {
                id: question

                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                visible: root.asking
                onDeleteTapped: root.composer.cancel()
                onSaveTapped: root.saveDraft()
                onGoOnTapped: root.goOn()
            }
        }
    }
}
