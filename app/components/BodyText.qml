import QtQuick
import QtQuick.Templates as T
import Orvane

// Text to read.
T.Label {
    color: Theme.text
    font.pixelSize: Theme.textSize
    lineHeightMode: Text.FixedHeight
    lineHeight: 20
    elide: Text.ElideRight
    textFormat: Text.PlainText
    linkColor: Theme.accent
}
