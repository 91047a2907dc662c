pragma Singleton
import QtQuick

// The keys that the lock screen knows, by the names that gestures have for them.
QtObject {
    readonly property var names: ({
            [Qt.Key_Left]: "Left", [Qt.Key_Right]: "Right", [Qt.Key_Up]: "Up", [Qt.Key_Down]: "Down",
            [Qt.Key_Return]: "Enter", [Qt.Key_Enter]: "Enter", [Qt.Key_Menu]: "Menu", [Qt.Key_Escape]: "Escape",
            [Qt.Key_Backspace]: "BackSpace", [Qt.Key_Home]: "Home", [Qt.Key_Space]: "Space", [Qt.Key_S]: "S"
        })

    // Whether a key that is held down does it again and again.
    function repeats(name) {
        return Array.from(["Left", "Right", "Up", "Down", "BackSpace"]).includes(name);
    }
    function nameOf(event) {
        if (event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier)) return "";
        if (event.key >= Qt.Key_0 && event.key <= Qt.Key_9) return String(event.key - Qt.Key_0);
        const name = names[event.key] ?? "";
        return name === "Enter" && (event.modifiers & Qt.ShiftModifier) ? "Shift+Enter" : name;
    }
}
