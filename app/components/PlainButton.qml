import QtQuick
import Orvane

ButtonBase {
    fill: !enabled ? Theme.surface : down ? Theme.accentSoft : hovered ? Theme.hover : Theme.surface
    outline: Theme.line
}
