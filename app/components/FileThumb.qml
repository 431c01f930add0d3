import QtQuick
import Orvane

// A small picture of a file, or its symbol on a soft ground where it has none.
Rectangle {
    id: root

    property string source: ""
    property string symbol: "file"

    // A file that is no picture comes as a single pixel.
    readonly property bool hasPicture: picture.status === Image.Ready && picture.implicitWidth > 1

    implicitWidth: 52
    implicitHeight: 40
    radius: 6
    color: Theme.accentSoft
    Accessible.ignored: true

    Icon {
        anchors.centerIn: parent
        visible: !root.hasPicture
        name: root.symbol
        color: Theme.accent
    }

    Image {
        id: picture

        anchors.fill: parent
        source: root.source
        sourceSize.width: 104
        sourceSize.height: 80
        fillMode: Image.PreserveAspectCrop
        asynchronous: true
        cache: false
    }

    // Rounds the picture's corners off against the list.
    Rectangle {
        anchors.fill: parent
        anchors.margins: -2
        radius: 8
        visible: root.hasPicture
        color: "transparent"
        border.width: 2
        border.color: Theme.surface
    }
}
