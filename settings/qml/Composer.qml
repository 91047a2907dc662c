import QtQuick
import QtQuick.Window
import QtQuick.Templates as T
import Lumora

// A message to complete and send, on a sheet that slides over the window from below. What is edited is kept here alone:
// snapshots tell only whether it is being sent and what became of that.
FocusScope {
    id: root

    // Null once composing has ended; the sheet slides away then and says when it is gone.
    property ComposerModel composer
    property int gap: 0 // above the sheet
    property bool animated: true // it slides, here and away, where anything moves at all
    signal gone

    property bool open: false
    property bool handedOver: false // until the first answer to that comes
    property bool saving: false
    property bool asking: false // whether to throw away what was edited
    property Item focusBefore: null // of that question
    property var begun: ({ to: "", subject: "", body: "" })
    property var attachments: []
    readonly property bool slides: animated && Theme.animated
    readonly property bool working: handedOver || (composer?.working ?? true)
    readonly property bool edited: to.text !== begun.to || subject.text !== begun.subject || body.text !== begun.body

    function send() {
        if (working || asking || !sendButton.enabled)
            return;
        handedOver = true;
        saving = false;
        composer.send(to.text, subject.text, body.text);
    }
    function saveDraft() {
        if (working)
            return;
        asking = false;
        handedOver = true;
        saving = true;
        composer.saveDraft(to.text, subject.text, body.text);
    }
    // What was edited is not thrown away by one key.
    function cancel() {
        if (working)
            return;
        if (!edited)
            composer.cancel();
        else if (asking)
            goOn();
        else
            ask();
    }
    function ask() {
        focusBefore = Window.activeFocusItem;
        asking = true;
        keepButton.forceActiveFocus(Qt.PopupFocusReason);
    }
    function goOn() {
        asking = false;
        (focusBefore ?? body).forceActiveFocus(Qt.PopupFocusReason);
    }
    // The window is closed: what the user has written, or wanted to send, is not thrown away. What is being sent goes on.
    function leave() {
        if (composer && (edited || handedOver || composer.working || composer.problem))
            composer.leave(to.text, subject.text, body.text);
    }
    function slideAway() {
        if (!slides || !open)
            gone();
        open = false;
    }

    Component.onCompleted: {
        begun = { to: composer.to, subject: composer.subject, body: composer.body };
        attachments = composer.attachments;
        to.text = begun.to;
        subject.text = begun.subject;
        body.text = begun.body;
        to.field.cursorPosition = 0; // a long text begins at its beginning
        subject.field.cursorPosition = 0;
        open = true;
        body.forceActiveFocus(Qt.OtherFocusReason);
    }
    onComposerChanged: if (!composer) slideAway()

    Connections {
        target: root.composer
        function onChanged() { if (!root.composer.working) root.handedOver = false }
    }
    Shortcut {
        sequence: "Escape"
        enabled: root.open
        onActivated: root.cancel()
    }
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: root.open
        onActivated: root.send()
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: root.open ? 0.4 : 0

        Behavior on opacity { enabled: root.slides; NumberAnimation { duration: 300 } }
    }
    // What is behind hears nothing.
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }

    Item {
        id: sheet

        x: Math.round((parent.width - width) / 2)
        y: root.open ? root.gap : parent.height
        width: Math.min(parent.width, Theme.contentWidth + 2 * Theme.inset)
        height: parent.height - root.gap
        Accessible.role: Accessible.Dialog
        Accessible.name: title.text

        Behavior on y {
            enabled: root.slides
            NumberAnimation {
                duration: 300
                easing.type: Easing.OutCubic
                onRunningChanged: if (!running && !root.open) root.gone()
            }
        }

        // Its lower corners are beneath the window.
        Rectangle {
            width: parent.width
            height: parent.height + radius
            radius: 14
            color: Theme.cell
            antialiasing: true
        }

        Item {
            id: head

            // The title gets a line of its own when there is not enough room for it between the buttons.
            readonly property real room: width - 2 * Math.max(cancelButton.x + cancelButton.width, width - sendButton.x)
            readonly property bool stacked: title.implicitWidth > room
            readonly property int line: 52
            readonly property int full: line + (stacked ? title.implicitHeight + 8 : 0)

            width: parent.width
            // In a low window it makes room for a question that is asked in large letters.
            height: visible ? full : 0
            visible: !root.asking || full + foot.height + Theme.rowHeight <= sheet.height
            enabled: !root.asking

            ComposerButton {
                id: cancelButton

                anchors { left: parent.left; leftMargin: Theme.inset - leftPadding; verticalCenter: parent.top; verticalCenterOffset: head.line / 2 }
                text: qsTr("Cancel")
                enabled: !root.working
                onClicked: root.cancel()
            }
            Text {
                id: title

                anchors { horizontalCenter: parent.horizontalCenter; verticalCenter: parent.top; verticalCenterOffset: head.stacked ? head.line + height / 2 : head.line / 2 }
                width: Math.min(Math.ceil(implicitWidth), head.width - 2 * Theme.inset)
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: qsTr("New Message")
                color: Theme.text
                font { pixelSize: Theme.bodySizeWithin(40); weight: Font.DemiBold }
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            ComposerButton {
                id: sendButton

                anchors { right: parent.right; rightMargin: Theme.inset - rightPadding; verticalCenter: parent.top; verticalCenterOffset: head.line / 2 }
                text: qsTr("Send")
                strong: true
                enabled: !root.working && to.text.trim().length > 0
                onClicked: root.send()
            }
            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
                height: 1
                color: Theme.hairline
            }
        }

        Scroller {
            id: scroller

            anchors { left: parent.left; right: parent.right; top: head.bottom; bottom: foot.top }
            contentHeight: column.height
            visible: height > 0
            enabled: !root.asking

            // A field is seen with what is above it, as far as there is room.
            function showFocus() {
                const cursor = body.cursorRectangle;
                if (body.activeFocus)
                    show(body.y + cursor.y - (body.y + cursor.y < contentY ? 8 : 0), body.y + cursor.y + cursor.height + 8);
                else if (to.field.activeFocus)
                    scrollTo(0);
                else if (subject.field.activeFocus)
                    scrollTo(subject.y + subject.height - height);
            }
            onHeightChanged: showFocus()
            onContentHeightChanged: showFocus()

            Column {
                id: column

                width: scroller.width

                ComposerField {
                    id: to

                    width: parent.width
                    label: qsTr("To")
                    readOnly: root.working
                    field.inputMethodHints: Qt.ImhEmailCharactersOnly
                    field.onAccepted: subject.field.forceActiveFocus(Qt.TabFocusReason)
                    field.onActiveFocusChanged: scroller.showFocus()
                }
                ComposerField {
                    id: subject

                    width: parent.width
                    label: qsTr("Subject")
                    readOnly: root.working
                    field.onAccepted: body.forceActiveFocus(Qt.TabFocusReason)
                    field.onActiveFocusChanged: scroller.showFocus()
                }
                T.TextArea {
                    id: body

                    width: parent.width
                    height: Math.max(contentHeight + topPadding + bottomPadding, 200)
                    topPadding: 12
                    bottomPadding: 12
                    leftPadding: Theme.inset
                    rightPadding: Theme.inset
                    activeFocusOnTab: true
                    readOnly: root.working
                    textFormat: TextEdit.PlainText
                    wrapMode: TextEdit.Wrap
                    selectByMouse: true
                    font.family: title.font.family
                    font.pixelSize: Theme.bodySize
                    color: Theme.text
                    selectionColor: Theme.accent
                    selectedTextColor: "white"
                    // Tab goes on to the next control, as everywhere else.
                    KeyNavigation.priority: KeyNavigation.BeforeItem
                    KeyNavigation.tab: saveButton
                    KeyNavigation.backtab: subject.field
                    Accessible.name: qsTr("Message")

                    onCursorRectangleChanged: scroller.showFocus()
                    cursorDelegate: Rectangle {
                        visible: body.cursorVisible
                        width: 2
                        radius: 1
                        color: Theme.accent
                    }
                }
                Repeater {
                    model: root.attachments

                    Item {
                        id: attachment

                        required property var modelData

                        readonly property bool stacked: name.implicitWidth + 12 + size.implicitWidth > width - 2 * Theme.inset

                        width: column.width
                        height: Math.max(Theme.rowHeight, 2 * Theme.rowMargin + name.implicitHeight + (stacked ? size.implicitHeight : 0))
                        Accessible.role: Accessible.ListItem
                        Accessible.name: qsTr("Attachment %1, %2").arg(modelData.name).arg(modelData.size)

                        Rectangle {
                            anchors { left: parent.left; leftMargin: Theme.inset; right: parent.right }
                            height: 1
                            color: Theme.hairline
                        }
                        WordText {
                            id: name

                            anchors { left: parent.left; leftMargin: Theme.inset; right: parent.right; rightMargin: Theme.inset
                                      verticalCenter: parent.verticalCenter; verticalCenterOffset: attachment.stacked ? -size.height / 2 : 0 }
                            text: attachment.modelData.name
                            color: Theme.text
                            Accessible.ignored: true
                        }
                        Text {
                            id: size

                            anchors { right: parent.right; rightMargin: Theme.inset
                                      verticalCenter: parent.verticalCenter; verticalCenterOffset: attachment.stacked ? name.height / 2 : 0 }
                            text: attachment.modelData.size
                            color: Theme.secondary
                            font.pixelSize: Theme.bodySize
                            Accessible.ignored: true
                        }
                    }
                }
            }
        }

        Item {
            id: foot

            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: root.asking ? question.height + 16 : line + (stacked && problem.visible ? problem.height + 8 : 0)

            readonly property real line: Math.max(48, saveButton.height + 8)
            readonly property real room: width - saveButton.x - saveButton.width - 12 - Theme.inset // beside the button
            readonly property bool stacked: unbound.advanceWidth + 1 > room || /[\n\r\u2028\u2029]/.test(status.text)

            Rectangle {
                width: parent.width
                height: 1
                color: Theme.hairline
            }
            ComposerButton {
                id: saveButton

                anchors { left: parent.left; leftMargin: Theme.inset - leftPadding; verticalCenter: parent.bottom; verticalCenterOffset: -foot.line / 2 }
                text: qsTr("Save Draft")
                visible: !root.asking
                enabled: !root.working
                onClicked: root.saveDraft()
            }
            // Beside the button where there is room for it, or else above; a long one scrolls.
            Scroller {
                id: problem

                readonly property real most: Math.min(0.4 * sheet.height, sheet.height - head.height - foot.line - Theme.rowHeight) - 8

                x: foot.stacked ? Theme.inset : parent.width - Theme.inset - width
                y: foot.stacked ? 8 : Math.round((parent.height - height) / 2)
                width: foot.stacked ? parent.width - 2 * Theme.inset : foot.room
                height: Math.max(0, Math.min(status.height, most))
                contentHeight: status.height
                line: Theme.footSize
                visible: status.text.length > 0
                activeFocusOnTab: contentHeight > height
                Keys.onPressed: event => takeKey(event)
                Accessible.role: Accessible.AlertMessage
                Accessible.name: status.text
                Accessible.focusable: activeFocusOnTab

                WordText {
                    id: status

                    width: problem.width
                    text: !root.open || !root.composer || root.asking ? ""
                        : root.working ? (root.saving ? qsTr("Saving…") : qsTr("Sending…")) : root.composer.problem
                    color: root.working ? Theme.secondary : Theme.warning
                    largestSize: Theme.footSize
                    horizontalAlignment: foot.stacked ? Text.AlignLeft : Text.AlignRight
                    onTextChanged: problem.contentY = 0
                    Accessible.ignored: true
                }
            }
            Rectangle {
                visible: problem.activeFocus
                anchors { fill: problem; margins: -4 }
                radius: 8
                color: "transparent"
                border { width: 2; color: Theme.accent }
                antialiasing: true
            }
            TextMetrics {
                id: unbound

                font { family: status.font.family; pixelSize: Theme.footSize }
                text: status.text
            }
            Column {
                id: question

                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                visible: root.asking
                enabled: root.asking
                topPadding: 8

                Text {
                    width: parent.width
                    leftPadding: Theme.inset
                    rightPadding: Theme.inset
                    bottomPadding: 4
                    text: root.asking ? qsTr("Keep what was written?") : ""
                    color: Theme.secondary
                    font.pixelSize: Theme.footSize
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.AlertMessage
                    Accessible.name: text
                }
                ComposerButton {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: qsTr("Delete Draft")
                    tint: Theme.warning
                    onClicked: root.composer.cancel()
                }
                ComposerButton {
                    id: keepButton

                    anchors.horizontalCenter: parent.horizontalCenter
                    text: qsTr("Save Draft")
                    strong: true
                    onClicked: root.saveDraft()
                }
                ComposerButton {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: qsTr("Continue Editing")
                    onClicked: root.goOn()
                }
            }
        }
    }
}
