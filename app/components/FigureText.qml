import QtQuick
import QtQuick.Templates as T
import Orvane

// A number to be read across the room.
T.Label {
    color: Theme.text
    font.pixelSize: Theme.figureSize
    font.weight: Font.DemiBold
    elide: Text.ElideRight
    textFormat: Text.PlainText
    linkColor: Theme.accent
}
