import QtQuick
import Orvane

// One file that a plan would touch, or the header of those of one folder that go to one place.
Item {
    id: root

    required property int index
    required property int kind
    required property string name
    required property string place
    required property string reason
    required property int checkState
    required property int risk
    required property double date
    required property double bytes
    required property double count
    required property bool expanded
    required property string destination

    property bool isFocused: false
    // Whether anything of the plan can be chosen: a mere list has neither boxes nor locks.
    property bool hasChoice: true
    signal toggled
    signal folded
    signal menuAsked

    readonly property bool isHeader: kind === AgentModel.Header

    height: isHeader ? 41 : 52

    SectionHeader {
        anchors.fill: parent
        visible: root.isHeader
        name: root.isHeader ? root.name : ""
        count: root.isHeader ? Texts.counted("count.files", root.count) : ""
        size: root.isHeader ? Texts.bytes(root.bytes) : ""
        isExpanded: root.expanded
        hasBox: root.hasChoice
        checkState: root.checkState
        canCheck: root.checkState >= 0
        isFocused: root.isHeader && root.isFocused
        onToggled: root.toggled()
        onFolded: root.folded()
    }

    ItemRow {
        anchors.fill: parent
        visible: !root.isHeader
        name: root.isHeader ? "" : root.name
        place: Texts.joined([root.place, root.destination], " → ")
        remark: root.destination === "" ? root.reason : ""
        chip: root.isHeader ? "" : Texts.risk(root.risk)
        chipKind: root.risk
        explanation: Texts.riskDescription(root.risk)
        age: Texts.age(root.date)
        size: root.isHeader ? "" : Texts.bytes(root.bytes)
        checkState: root.checkState
        canCheck: root.checkState >= 0
        hasBox: root.hasChoice
        lockReason: root.isHeader || root.checkState >= 0 || !root.hasChoice
                    ? "" : root.risk === Chip.Kind.Manual ? Texts.riskDescription(root.risk) : root.reason
        isFocused: !root.isHeader && root.isFocused
        onToggled: root.toggled()
        onMenuAsked: root.menuAsked()
    }
}
