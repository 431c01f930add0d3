import QtQuick
import Orvane

// A section whose screen is not there yet: says in one line what it will hold.
Page {
    id: root

    required property string section

    title: qsTr("nav." + section)
    subtitle: qsTr(section + ".subtitle")

    Card {
        anchors.fill: parent

        EmptyState {
            anchors.fill: parent
            drawing: root.section === "settings" ? "rules" : root.section
            text: qsTr(root.section + ".will_hold")
        }
    }
}
