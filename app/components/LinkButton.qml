import QtQuick
import Orvane

// An action that stands in a line of text.
ButtonBase {
    implicitHeight: 30
    leftPadding: 8
    rightPadding: 8
    ink: hovered || down ? Theme.accentHover : Theme.accent
    fill: hovered || down ? Theme.accentSoft : "transparent"
}
