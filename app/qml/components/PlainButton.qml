import QtQuick
import Orvane

ButtonBase {
    fill: down ? Theme.accentSoft : hovered ? Theme.hover : Theme.surface
    outline: Theme.line
}
