import QtQuick

// The text above a group of rows.
Caption {
    bottomPadding: 7
    Accessible.role: Accessible.Heading
}
