pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The version, and the libraries with their licences.
Sheet {
    id: root

    // Names and licences are the same in every language.
    readonly property list<string> libraries: [
        "Qt 6 — LGPL 3.0", "ICU — Unicode License", "{fmt} — MIT", "JSON for Modern C++ — MIT",
        "simdjson — Apache 2.0", "OpenSSL (libcrypto) — Apache 2.0", "libplist — LGPL 2.1", "libcurl — curl License",
        "libsecret — LGPL 2.1", "sdbus-c++ — LGPL 2.1"
    ]

    title: qsTr("about.title")

    ColumnLayout {
        width: parent.width
        spacing: 10

        BodyText {
            Layout.fillWidth: true
            text: qsTr("about.version").arg(Qt.application.version)
            font.weight: Font.DemiBold
        }

        BodyText {
            Layout.fillWidth: true
            text: qsTr("about.promise")
            wrapMode: Text.Wrap
        }

        CaptionText {
            Layout.fillWidth: true
            text: qsTr("about.licences")
        }

        Repeater {
            model: root.libraries

            CaptionText {
                required property string modelData

                Layout.fillWidth: true
                text: modelData
                color: Theme.text
            }
        }
    }

    buttons: [
        PrimaryButton {
            focus: true
            text: qsTr("action.close")
            onClicked: root.close()
        }
    ]
}
