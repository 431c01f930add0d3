import QtQuick
import QtQuick.Templates as T
import Orvane

// One entry of a menu.
T.MenuItem {
    id: root

    property bool isCurrent: false
    // Only menus of choices keep room for the check mark.
    property bool isChoice: true
    property string symbol: ""

    readonly property int lead: isChoice || symbol !== "" ? 30 : 10

    implicitWidth: lead + metrics.advanceWidth + 20
    implicitHeight: visible ? 34 : 0
    leftPadding: lead
    rightPadding: 12
    font.pixelSize: Theme.textSize
    Accessible.role: isChoice ? Accessible.RadioButton : Accessible.MenuItem
    Accessible.name: root.text
    Accessible.onPressAction: if (root.enabled) root.triggered()
    Accessible.checkable: isChoice
    Accessible.checked: isCurrent

    TextMetrics {
        id: metrics

        text: root.text
        font: root.font
    }

    contentItem: Text {
        text: root.text
        color: root.enabled ? Theme.text : Theme.disabled
        font: root.font
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    indicator: Icon {
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isCurrent || (!root.isChoice && root.symbol !== "")
        name: root.isChoice ? "check" : root.symbol
        size: 16
        color: root.isChoice ? Theme.accent : Theme.text
    }

    background: Rectangle {
        radius: 6
        color: root.highlighted ? Theme.accentSoft : "transparent"
    }
}
