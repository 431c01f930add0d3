import QtQuick
import Orvane

// One thing that narrows a list, named; pressing it takes it away.
ButtonBase {
    implicitHeight: 26
    leftPadding: 10
    rightPadding: 8
    ink: Theme.accentHover
    fill: hovered || down ? Theme.hover : Theme.accentSoft
    font.pixelSize: Theme.captionSize
    trailingSymbol: "close"
    Accessible.name: qsTr("cleanup.remove_filter").arg(text)
}
