import QtQuick
import QtQuick.Layouts
import Orvane

// The name of a field, beside it.
BodyText {
    Layout.preferredWidth: 166
    Layout.alignment: Qt.AlignTop
    Layout.topMargin: lineCount > 1 ? -2 : 8
    wrapMode: Text.Wrap
}
