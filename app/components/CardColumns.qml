import QtQuick
import QtQuick.Layouts
import Orvane

// Cards in two columns of one width, or those of the first above those of the second. Each column is a layout of its
// own: layouts within layouts miss changes of their texts' heights.
Item {
    id: root

    property alias first: firstColumn.data
    property alias second: secondColumn.data
    property bool isSplit: false

    readonly property real columnWidth: isSplit ? Math.floor((width - Theme.gap) / 2) : width

    implicitHeight: isSplit ? Math.max(firstColumn.implicitHeight, secondColumn.implicitHeight)
                            : firstColumn.implicitHeight + Theme.gap + secondColumn.implicitHeight

    ColumnLayout {
        id: firstColumn

        width: root.columnWidth
        spacing: Theme.gap
    }

    ColumnLayout {
        id: secondColumn

        x: root.isSplit ? root.columnWidth + Theme.gap : 0
        y: root.isSplit ? 0 : firstColumn.implicitHeight + Theme.gap
        width: root.columnWidth
        spacing: Theme.gap
    }
}
