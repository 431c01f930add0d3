import QtQuick

// Content in a file of its own, loaded while a condition holds. Not even the types that it is made of are loaded before,
// which for a large content is most of its memory.
Loader {
    id: root

    required property bool holds
    required property url file
    // The content is made with these.
    required property var properties

    active: holds
    visible: holds
    Component.onCompleted: setSource(root.file, root.properties)
}
