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
    // Names that are written from right to left stay in their column.
    horizontalAlignment: Text.AlignLeft
    textFormat: Text.PlainText
    linkColor: Theme.accent
}
