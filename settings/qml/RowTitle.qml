import QtQuick

// The title of a row, which grows with it.
WordText {
    color: Theme.text
    verticalAlignment: Text.AlignVCenter
}
