import QtQuick
import QtQuick.Templates as T

// The texts of a message, which can be edited, and its attachments. Scrolls to where the user writes.
Scroller {
    id: root

    readonly property alias to: to.text
    readonly property alias subject: subject.text
    readonly property alias body: body.text
    readonly property alias bodyField: body
    readonly property bool edited: to.text !== begun.to || subject.text !== begun.subject || body.text !== begun.body
    property bool readOnly: false
    property Item next // in the tab chain
    property var begun: ({ to: "", subject: "", body: "" })
    property var attachments: []

    contentHeight: column.height
    onHeightChanged: showFocus()
    onContentHeightChanged: showFocus()

    function begin(composer) {
        begun = { to: composer.to, subject: composer.subject, body: composer.body };
        attachments = composer.attachments;
        to.text = begun.to;
        subject.text = begun.subject;
        body.text = begun.body;
        to.field.cursorPosition = 0; // a long text is seen from its beginning
        subject.field.cursorPosition = 0;
        body.forceActiveFocus(Qt.OtherFocusReason);
    }
    // Shows the field that has the focus, with what is above it as far as there is room.
    function showFocus() {
        const cursor = body.cursorRectangle;
        const top = body.y + cursor.y;
        if (body.activeFocus)
            show(top - (top < contentY ? Theme.focusGap : 0), top + cursor.height + Theme.focusGap);
        else if (to.field.activeFocus)
            scrollTo(0);
        else if (subject.field.activeFocus)
            scrollTo(subject.y + subject.height - height);
    }

    Column {
        id: column

        width: root.width

        ComposerField {
            id: to

            width: parent.width
            label: qsTr("To")
            readOnly: root.readOnly
            field.inputMethodHints: Qt.ImhEmailCharactersOnly
            field.onAccepted: subject.field.forceActiveFocus(Qt.TabFocusReason)
            field.onActiveFocusChanged: root.showFocus()
        }
        ComposerField {
            id: subject

            width: parent.width
            label: qsTr("Subject")
            readOnly: root.readOnly
            field.onAccepted: body.forceActiveFocus(Qt.TabFocusReason)
            field.onActiveFocusChanged: root.showFocus()
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
            readOnly: root.readOnly
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            selectByMouse: true
            font { family: Application.font.family; pixelSize: Theme.bodySize }
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.onColor
            // Tab goes on to the next control, as everywhere else.
            KeyNavigation.priority: KeyNavigation.BeforeItem
            KeyNavigation.tab: root.next
            KeyNavigation.backtab: subject.field
            Accessible.name: qsTr("Message")

            onCursorRectangleChanged: root.showFocus()
            cursorDelegate: TextCursor { visible: body.cursorVisible }
        }
        Repeater {
            model: root.attachments

            ComposerAttachment { width: column.width }
        }
    }
}
