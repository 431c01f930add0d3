import QtQuick
import Orvane

// One file that a plan would touch.
Item {
    id: root

    required property int index
    required property string name
    required property string place
    required property string reason
    required property int checkState
    required property int risk
    required property double date
    required property double bytes
    required property string destination

    property bool isFocused: false
    signal toggled
    signal menuAsked

    height: 52

    ItemRow {
        anchors.fill: parent
        indent: 15
        name: root.name
        place: root.place
        remark: root.destination === "" ? root.reason : Texts.joined([root.reason, "→ " + root.destination], " ")
        chip: Texts.risk(root.risk)
        chipKind: root.risk
        explanation: Texts.riskDescription(root.risk)
        age: Texts.age(root.date)
        size: Texts.bytes(root.bytes)
        checkState: root.checkState
        canCheck: root.checkState >= 0
        isFocused: root.isFocused
        onToggled: root.toggled()
        onMenuAsked: root.menuAsked()
    }
}
