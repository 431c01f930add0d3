import QtQuick
import QtQuick.Layouts
import Orvane

// A folder by name over its path, with a way to take it off the list.
RowLayout {
    id: root

    property string name: ""
    property string path: ""
    property bool exists: true
    property bool canBeRead: exists
    property bool canRemove: false
    property string symbol: "folder"
    // The folder on the list that holds this one.
    property string coveredBy: ""
    readonly property string remark: coveredBy === "" ? path : path + " · " + qsTr("settings.folder_covered").arg(coveredBy)
    readonly property string problem: !exists ? qsTr("settings.folder_missing")
                                              : canBeRead ? "" : qsTr("system.folder_unreadable")
    signal removeAsked

    spacing: 12
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + remark

    Icon {
        name: root.problem === "" ? root.symbol : "warning"
        color: root.problem === "" ? Theme.muted : Theme.review
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 0

        BodyText {
            Layout.fillWidth: true
            text: root.name
            Accessible.ignored: true
        }

        CaptionText {
            Layout.fillWidth: true
            text: Texts.fromLeft(root.problem === "" ? root.remark : root.path + " · " + root.problem)
            color: root.problem === "" ? Theme.muted : Theme.review
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }

    IconButton {
        visible: root.canRemove
        symbol: "close"
        iconSize: 14
        text: qsTr("settings.remove_folder")
        Accessible.name: text + ": " + root.name
        Accessible.description: root.path
        onClicked: root.removeAsked()
    }
}
