import QtQuick
import QtQuick.Layouts
import Orvane

// Size, number and age of the Trash's content, with the button that opens it.
Card {
    id: root

    required property AppState appState
    required property OverviewModel model

    implicitHeight: layout.implicitHeight + 2 * padding - 10

    RowLayout {
        id: layout

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12

        Figure {
            Layout.fillWidth: true
            caption: qsTr("dashboard.in_trash")
            figure: Texts.bytes(root.model.trashBytes)
            note: Texts.joined([
                Texts.counted("count.items", root.model.trashCount),
                root.model.trashOldest > 0 ? qsTr("dashboard.trash_oldest").arg(Texts.age(root.model.trashOldest)) : "",
                qsTr("dashboard.trash_note"),
                root.model.trashIsPartly ? qsTr("dashboard.trash_unanswered") : ""
            ], " · ")
        }

        PlainButton {
            symbol: "trash"
            text: qsTr("action.open_trash")
            onClicked: root.appState.openTrash()
        }
    }
}
