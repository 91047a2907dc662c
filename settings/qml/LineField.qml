import QtQuick
import QtQuick.Templates as T

// A field for one line of text.
T.TextField {
    id: root

    activeFocusOnTab: true
    containmentMask: TouchMask { item: root }
    // A control's own font is the desktop's; texts have the application's.
    font { family: Application.font.family; pixelSize: Theme.bodySize }
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.onColor
    horizontalAlignment: Theme.mirrored ? TextInput.AlignLeft : undefined
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    cursorDelegate: TextCursor { visible: root.cursorVisible }
}
