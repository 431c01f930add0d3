import QtQuick
import Orvane

// The title of a screen, which screen readers tell as a heading.
// No label: those say that they are labels, whatever they are told to say.
Text {
    color: Theme.text
    font.pixelSize: Theme.titleSize
    font.weight: Font.DemiBold
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft
    textFormat: Text.PlainText
    linkColor: Theme.accent
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
