import QtQuick
import Orvane

// One section of the navigation, with air above it where it begins a group.
Item {
    id: root

    required property int index
    required property int section
    required property string titleKey
    required property int group
    required property AppState appState
    property bool startsGroup: false
    property bool isCompact: false
    signal moved(int by)

    function choose() {
        root.appState.selectedNavigation = section;
        button.forceActiveFocus(Qt.TabFocusReason);
    }

    height: button.height + (startsGroup ? isCompact ? 9 : 14 : 0)

    SidebarItem {
        id: button

        anchors.bottom: parent.bottom
        width: parent.width
        isCompact: root.isCompact
        text: qsTr(root.titleKey)
        symbol: root.titleKey.slice(4)
        isCurrent: root.appState.selectedNavigation === root.section
        figure: root.section === AppNavigationItem.Cleanup && root.appState.hasScanned
                && root.appState.proposedBytes > 0 ? Texts.roughBytes(root.appState.proposedBytes, 3) : ""
        onClicked: root.appState.selectedNavigation = root.section
        Keys.onUpPressed: root.moved(-1)
        Keys.onDownPressed: root.moved(1)
    }
}
