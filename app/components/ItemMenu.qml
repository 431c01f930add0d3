import QtQuick
import Orvane

// The actions on an item of any list. A list says which of the entries it has and adds its own as children.
ChoiceMenu {
    id: root

    required property AppState appState
    // A path or a URL; empty for a row that is no item.
    property string place: ""
    property bool canKeep: false
    property bool canExplain: false
    signal keepAsked
    signal explainAsked

    // Under the row where the keyboard asks, else under the pointer.
    function show(place: string, row: Item, byKey: bool) {
        root.place = place;
        if (byKey && row)
            popup(row, 60, row.height);
        else
            popup();
    }

    ChoiceItem {
        isChoice: false
        enabled: root.place !== ""
        symbol: "search"
        text: qsTr("look.preview")
        onTriggered: root.appState.preview.look(root.place)
    }

    ChoiceItem {
        isChoice: false
        enabled: root.place !== ""
        symbol: "file"
        text: qsTr("action.open")
        onTriggered: root.appState.openItem(root.place)
    }

    ChoiceItem {
        isChoice: false
        enabled: root.place !== ""
        symbol: "folder-open"
        text: qsTr("action.reveal_in_finder")
        onTriggered: root.appState.revealItem(root.place)
    }

    ChoiceItem {
        isChoice: false
        enabled: root.place !== ""
        symbol: "edit"
        text: qsTr("action.copy_path")
        onTriggered: root.appState.copyPath(root.place)
    }

    ChoiceItem {
        isChoice: false
        visible: root.canExplain
        enabled: root.place !== ""
        symbol: "info"
        text: qsTr("cleanup.why")
        onTriggered: root.explainAsked()
    }

    ChoiceItem {
        isChoice: false
        visible: root.canKeep
        enabled: root.place !== ""
        symbol: "lock"
        text: qsTr("keep.keep")
        onTriggered: root.keepAsked()
    }
}
