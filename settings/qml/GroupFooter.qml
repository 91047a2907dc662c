import QtQuick

// The text beneath a group of rows.
Caption {
    topPadding: 7
    lineHeight: 1.1
    Accessible.role: Accessible.StaticText
    Accessible.focusable: false
}
