import QtQuick
import Orvane

// A small picture of a file, or its symbol on a soft ground where it has none.
Rectangle {
    id: root

    property string source: ""
    property string symbol: "file"

    implicitWidth: 52
    implicitHeight: 40
    radius: 6
    color: Theme.accentSoft
    Accessible.ignored: true

    Icon {
        anchors.centerIn: parent
        visible: picture.status !== Image.Ready
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
        visible: picture.status === Image.Ready
        color: "transparent"
        border.width: 2
        border.color: Theme.surface
    }
}
