import QtQuick
import Orvane

// The one thing that a screen is for.
ButtonBase {
    ink: Theme.inkOnAccent
    fill: hovered || down ? Theme.accentHover : Theme.accent
}
