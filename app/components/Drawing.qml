import QtQuick
import Orvane

// The drawing of an empty state.
Image {
    id: root

    required property string name
    property color color: Theme.accent

    source: "image://icon/drawing-" + name + "/" + ("" + color).slice(-6)
    sourceSize.width: 150
    sourceSize.height: 120
    width: 150
    height: 120
    Accessible.ignored: true
}
