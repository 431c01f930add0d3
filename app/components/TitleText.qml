import QtQuick
import QtQuick.Templates as T
import Orvane

// The title of a screen.
T.Label {
    color: Theme.text
    font.pixelSize: Theme.titleSize
    font.weight: Font.DemiBold
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft
    textFormat: Text.PlainText
    linkColor: Theme.accent
}
