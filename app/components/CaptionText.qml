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
    textFormat: Text.PlainText
    linkColor: Theme.accent
}
