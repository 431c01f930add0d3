import QtQuick
import Orvane

// How full the disk is, in a thin bar under its figures.
Column {
    id: root

    required property double used
    required property double total
    property string text: ""

    spacing: 6
    Accessible.role: Accessible.ProgressBar
    Accessible.name: root.text

    CaptionText {
        width: parent.width
        text: root.text
        // One line in every language.
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 10
        Accessible.ignored: true
    }

    Meter {
        width: parent.width
        implicitHeight: 4
        filled: root.total > 0 ? root.used / root.total : 0
    }
}
