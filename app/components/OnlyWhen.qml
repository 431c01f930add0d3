import QtQuick

// Makes its content while a condition holds. Content that is merely hidden takes as much time and memory as what is
// seen. Stands wherever the content would stand: in a layout too.
Repeater {
    property bool holds: false

    model: holds ? 1 : 0
}
