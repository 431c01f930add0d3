import QtQuick
import Orvane

// The one thing that a screen is for.
ButtonBase {
    ink: Theme.inkOnAccent
    fill: !enabled ? Theme.manualSoft : hovered || down ? Theme.accentHover : Theme.accent
}
