import QtQuick
import Lumora

// A shortcut that does its work once when its key is held.
Shortcut {
    signal pressed

    onActivated: if (!Keyboard.repeats()) pressed()
}
