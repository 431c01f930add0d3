pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// What Orvane does and never does, at the first start.
Sheet {
    id: root

    required property AppState appState

    sheetWidth: 520
    canClose: false

    ColumnLayout {
        width: parent.width
        spacing: 18

        Icon {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 4
            name: "mark"
            size: 56
            color: Theme.accent
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 4

            TitleText {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: qsTr("onboarding.title")
            }

            BodyText {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                color: Theme.muted
                text: qsTr("app.tagline")
            }
        }

        Promise {
            symbol: "search"
            title: qsTr("onboarding.finds_title")
            text: qsTr("onboarding.finds_text")
        }

        Promise {
            symbol: "undo"
            title: qsTr("onboarding.undo_title")
            text: qsTr("onboarding.undo_text")
        }

        Promise {
            symbol: "privacy"
            title: qsTr("onboarding.never_title")
            text: qsTr("onboarding.never_text")
        }
    }

    buttons: PrimaryButton {
        focus: true
        implicitHeight: 40
        text: qsTr("onboarding.start")
        onClicked: {
            root.appState.completeOnboarding();
            root.close();
        }
    }

    component Promise: RowLayout {
        id: promise

        property string symbol
        property string title
        property string text

        Layout.fillWidth: true
        spacing: 14

        Rectangle {
            Layout.alignment: Qt.AlignTop
            implicitWidth: 36
            implicitHeight: 36
            radius: 10
            color: Theme.accentSoft

            Icon {
                anchors.centerIn: parent
                name: promise.symbol
                color: Theme.accent
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            HeadingText {
                Layout.fillWidth: true
                text: promise.title
                wrapMode: Text.Wrap
            }

            BodyText {
                Layout.fillWidth: true
                color: Theme.muted
                text: promise.text
                wrapMode: Text.Wrap
            }
        }
    }
}
