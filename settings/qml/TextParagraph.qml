import QtQuick

// What assistive tools are told of a text that is drawn by something else.
Item {
    property string text
    property bool heads: false // what comes after it

    Accessible.role: heads ? Accessible.Heading : Accessible.Paragraph
    Accessible.name: text
    Accessible.focusable: false
}
