import QtQuick
import QtQuick.Templates as T
import Orvane

// A caption or remark.
T.Label {
    color: Theme.muted
    font.pixelSize: Theme.captionSize
    lineHeightMode: Text.FixedHeight
    lineHeight: 16
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft
    textFormat: Text.PlainText
    linkColor: Theme.accent
}
