import QtQuick
import Orvane

// The one thing that a screen is for.
ButtonBase {
    ink: Theme.onAccent
    fill: hovered || down ? Theme.accentHover : Theme.accent
}
