pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// One row of the cleanup list: the header of a category, or an item.
Item {
    id: root

    required property int index
    required property int kind
    required property string name
    required property string place
    required property string reason
    required property int risk
    required property double date
    required property double bytes
    required property int checkState
    required property int colorIndex
    required property double count
    required property bool expanded
    required property string cloudWarning
    required property bool isFolder
    required property string lockReason
    property bool isFocused: false
    signal toggled
    signal folded
    signal touched
    signal explainAsked
    signal openFolderAsked
    signal keepAsked
    signal menuAsked
    signal rangeAsked
    signal openAsked

    readonly property bool isHeader: kind === 0

    // Reasons take a second line where the list is narrow.
    readonly property bool isNarrow: width < 700

    height: isHeader ? 41 : isNarrow ? 56 : 51

    // Few rows are headers: most never make one.
    Repeater {
        model: root.isHeader ? 1 : 0

        SectionHeader {
            anchors.fill: parent
            name: root.name
            count: Texts.counted("count.items", root.count)
            size: Texts.bytes(root.bytes)
            colorIndex: root.colorIndex
            isExpanded: root.expanded
            checkState: root.checkState
            canCheck: root.checkState >= 0
            isFocused: root.isFocused
            onToggled: root.toggled()
            onFolded: root.folded()
        }
    }

    ItemRow {
        anchors.fill: parent
        visible: !root.isHeader
        name: root.isHeader ? "" : root.name
        place: root.place
        remark: root.reason
        remarkLines: root.isNarrow ? 2 : 1
        warning: root.cloudWarning
        chip: root.isHeader ? "" : Texts.risk(root.risk)
        chipKind: root.risk
        explanation: root.isHeader ? "" : Texts.riskDescription(root.risk)
        age: root.isHeader ? "" : Texts.age(root.date)
        size: root.isHeader ? "" : Texts.bytes(root.bytes)
        checkState: root.checkState
        canCheck: root.checkState >= 0
        lockReason: root.lockReason
        canExplain: true
        canOpenFolder: true
        canKeep: true
        isFocused: !root.isHeader && root.isFocused
        onToggled: root.toggled()
        onPressed: root.touched()
        onMenuAsked: root.menuAsked()
        onRangeAsked: root.rangeAsked()
        onOpenAsked: root.openAsked()
        onExplainAsked: root.explainAsked()
        onOpenFolderAsked: root.openFolderAsked()
        onKeepAsked: root.keepAsked()
    }
}
