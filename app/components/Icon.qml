import QtQuick
import Orvane

// A line icon in one colour. Decoration: the text beside it says the same.
Image {
    id: root

    required property string name
    property color color: Theme.text
    property int size: 18

    source: name === "" ? "" : "image://icon/" + name + "/" + ("" + color).slice(-6)
    sourceSize.width: size
    sourceSize.height: size
    width: size
    height: size
    fillMode: Image.PreserveAspectFit
    Accessible.ignored: true
}
